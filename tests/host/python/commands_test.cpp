#include "host/python/python_session.h"

namespace torvel::test {
namespace {

TEST_F(Python, FlattensPositionalArguments) {
    EXPECT_EQ(run("cmds.list('a', ['b', ('c', ['d'])])"), "['a' 'b' 'c' 'd']");
    EXPECT_EQ(run("cmds.list(None, 'a', None)"), "['a']");
    EXPECT_EQ(run("cmds.probe(True, 2, 0.5)"), "'create | 1 2 0.5'");
    EXPECT_EQ(raised("cmds.list([])"), "'TypeError: Invalid argument: an empty list.'");
    EXPECT_EQ(
        raised("cmds.list(b'x')"),
        "'TypeError: Invalid argument: objects of type 'bytes' cannot be passed to a command.'");
    EXPECT_EQ(raised("cmds.list(2 ** 70)").substr(0, 11), "'TypeError:");
}

TEST_F(Python, TakesFlagsByEitherName) {
    EXPECT_EQ(run("cmds.probe('x', name='n', nw=True)"), "'create name=n noWarn | x'");
    EXPECT_EQ(run("cmds.probe(noWarn=False)"), "'create |'");
    EXPECT_EQ(run("cmds.probe(size=(3, 4))"), "'create size=3,4 |'");
    EXPECT_EQ(run("cmds.probe(visible=0)"), "'create visible=0 |'");
    EXPECT_EQ(run("cmds.probe(many=['a', 'b'])"), "'create many=a,b |'");
    EXPECT_EQ(run("cmds.probe(angle='90deg', length='3in')"), "'create angle=90 length=7.62 |'");
}

TEST_F(Python, RepeatsMultiUseFlags) {
    EXPECT_EQ(run("cmds.probe(p=[(0, 0, 0), (1, 0, 0)])"), "'create point=0,0,0 point=1,0,0 |'");
    EXPECT_EQ(run("cmds.probe(p=(1, 2, 3))"), "'create point=1,2,3 |'");
    EXPECT_EQ(run("cmds.probe(sk=['x', 'y'])"), "'create skip=x skip=y |'");
    EXPECT_EQ(run("cmds.probe(sk='x')"), "'create skip=x |'");
}

TEST_F(Python, ReadsModes) {
    EXPECT_EQ(run("cmds.probe('x', q=True, name=True)"), "'query name | x'");
    EXPECT_EQ(run("cmds.probe('x', query=1, n=1)"), "'query name | x'");
    EXPECT_EQ(run("cmds.probe('x', e=1, n='new')"), "'edit name=new | x'");
    EXPECT_EQ(run("cmds.probe('x', q=True, isType='mesh')"), "'query isType=mesh | x'");
    EXPECT_EQ(run("cmds.probe('x', q=False, n='a')"), "'create name=a | x'");
}

TEST_F(Python, RefusesWrongFlags) {
    EXPECT_EQ(raised("cmds.probe(zz=1)"), "'TypeError: Invalid flag 'zz''");
    EXPECT_EQ(raised("cmds.probe(nw='x')"),
              "'TypeError: Flag 'nw' must be passed a boolean argument'");
    EXPECT_EQ(raised("cmds.probe(name=3)"),
              "'TypeError: Invalid arguments for flag 'name'.  Expected string, got int'");
    EXPECT_EQ(raised("cmds.probe(size=1)"),
              "'TypeError: Invalid arguments for flag 'size'.  Expected ( int, int ), got int'");
    EXPECT_EQ(raised("cmds.probe(s=(1, 2, 3))"),
              "'TypeError: Invalid arguments for flag 's'.  Expected ( int, int ), got [ int, int, "
              "int ]'");
    EXPECT_EQ(raised("cmds.probe(n='a', name='b')").substr(0, 17), "'TypeError: Flag ");
    EXPECT_EQ(raised("cmds.probe(q=True, name='a')"),
              "'TypeError: Flag 'name' must be passed a boolean argument when query flag is set'");
    EXPECT_EQ(raised("cmds.probe(q=True, e=True)").substr(0, 11), "'TypeError:");
    EXPECT_EQ(raised("cmds.probe(q=True, create=True)"),
              "'TypeError: Flag 'create' cannot be used in query mode.'");
    EXPECT_EQ(raised("cmds.probe(angle='3bananas')").substr(0, 11), "'TypeError:");
}

TEST_F(Python, RaisesTheClassOfTheStatus) {
    EXPECT_EQ(raised("cmds.fails('value')"), "'ValueError: No object matches name: x'");
    EXPECT_EQ(raised("cmds.fails('type')"), "'TypeError: Invalid flag 'x''");
    EXPECT_EQ(raised("cmds.fails()"), "'RuntimeError: fails: it went wrong'");
    EXPECT_EQ(raised("cmds.error('text')"), "'RuntimeError: text'");
    m_shown.clear();
    EXPECT_EQ(run("cmds.warning('careful')"), "none");
    EXPECT_EQ(m_shown, "# Warning: careful\n");
}

TEST_F(Python, PluginCommandsComeAndGo) {
    EXPECT_EQ(run("hasattr(cmds, 'plug')"), "False");
    m_session.addPluginCommand("plug", [](const std::vector<Value>& args, Value& result) {
        result = Value(static_cast<std::int64_t>(args.size()));
        return Status::ok();
    });
    EXPECT_EQ(run("cmds.plug('a', n='b')"), "3");
    EXPECT_EQ(run("kept = cmds.plug; cmds.plug.__name__"), "'plug'");
    m_session.removePluginCommand("plug");
    EXPECT_EQ(run("hasattr(cmds, 'plug')"), "False");
    EXPECT_EQ(raised("kept()"), "'RuntimeError: Cannot find procedure \"plug\".'");
}

TEST_F(Python, CommandsTellTheirFlags) {
    EXPECT_EQ(run("'noWarn (nw)' in cmds.probe.__doc__ and repr(cmds.probe)"), "'<command probe>'");
}

}  // namespace
}  // namespace torvel::test
