#include <algorithm>

#include "graph/evaluator.h"
#include "graph/scene.h"
#include "graph/writers.h"

namespace torvel {
namespace {

template <class T, class Same>
bool allSame(const std::vector<T>& a, const std::vector<T>& b, Same&& same) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), same);
}

WriterLinks& linksOf(WriterTable& table, Node& node) {
    if (!node.writerLinks) {
        node.writerLinks = std::make_unique<WriterLinks>();
        table.linked.push_back(node.self);
    }
    return *node.writerLinks;
}

std::vector<WriterDeclaration> declareAll(const Scene& scene, const WriterTable& table) {
    std::vector<WriterDeclaration> out(table.writers.size());
    for (std::size_t i = 0; i < table.writers.size(); ++i)
        if (const Node* writer = scene.node(table.writers[i]))
            writer->type->declareWrites(scene, *writer, out[i]);
    return out;
}

struct KeptValue {
    Plug plug;
    double own;
};

// Takes all ties off their nodes; the numbers that writers made stay where they are.
std::vector<KeptValue> takeLinks(Scene& scene, WriterTable& table) {
    std::vector<KeptValue> kept;
    for (NodeHandle handle : table.linked) {
        Node* node = scene.node(handle);
        if (!node || !node->writerLinks)
            continue;
        for (const WriterLinks::Written& w : node->writerLinks->written)
            kept.push_back({Plug(handle, w.attr), w.own});
        node->writerLinks.reset();
    }
    table.linked.clear();
    return kept;
}

// Two writers of one number: the later one has it.
void addWritten(WriterTable& table, Node& node, const WriterLinks::Written& written) {
    std::vector<WriterLinks::Written>& all = linksOf(table, node).written;
    for (WriterLinks::Written& present : all)
        if (present.attr == written.attr) {
            present = written;
            return;
        }
    all.push_back(written);
}

}  // namespace

// The plugs as they are dirtied: a compound stands for its children when all of them are written,
// one after the other.
std::vector<Plug> Scene::gatherWritten(const WriterDeclaration& said) const {
    std::vector<Plug> out;
    for (const WriterDeclaration::Written& w : said.writes) {
        out.push_back(w.plug);
        const Plug above = parentPlug(w.plug);
        const std::size_t count =
            above.isNull() || isElement(w.plug) ? 0 : info(above).children.size();
        if (count == 0 || out.size() < count ||
            info(w.plug).childNumber + 1 != static_cast<int>(count))
            continue;
        bool all = true;
        for (std::size_t k = 0; k < count; ++k)
            all = all && out[out.size() - count + k] == child(above, static_cast<int>(k));
        if (all) {
            out.resize(out.size() - count);
            out.push_back(above);
        }
    }
    return out;
}

bool WriterDeclaration::sameAs(const WriterDeclaration& other) const {
    return output == other.output && reads == other.reads &&
           allSame(writes, other.writes,
                   [](const Written& a, const Written& b) { return a.plug == b.plug; }) &&
           allSame(watches, other.watches, [](const Watched& a, const Watched& b) {
               return a.node == b.node && a.output == b.output;
           });
}

const WriterLinks::Written* WriterLinks::find(AttrIndex attr) const {
    for (const Written& w : written)
        if (w.attr == attr)
            return &w;
    return nullptr;
}

// Hangs the declared ties on the nodes at both ends; adds every plug that a writer now writes.
void Scene::linkWriters(std::vector<Plug>& changedPlugs) {
    for (std::size_t i = 0; i < m_writers->writers.size(); ++i) {
        const WriterDeclaration& said = m_writers->declared[i];
        Node* writer = node(m_writers->writers[i]);
        if (writer && said.output != kNoAttr && !said.notice.empty() &&
            !(writer->slot(said.output).state & kReported)) {
            writer->slot(said.output).state |= kReported;
            m_log.write(Channel::Warning, said.notice);
        }
        if (!writer || said.output == kNoAttr)
            continue;
        const Plug output(writer->self, said.output);
        writer->slot(said.output).state &= ~kClean;
        WriterLinks& own = linksOf(*m_writers, *writer);
        own.output = said.output;
        own.reads = said.reads;
        for (const WriterDeclaration::Written& w : said.writes)
            if (Node* target = node(w.plug.node)) {
                addWritten(*m_writers, *target, {w.plug.attr, output, w.own});
                changedPlugs.push_back(w.plug);
            }
        writer->writerLinks->writes = gatherWritten(said);
        for (const WriterDeclaration::Watched& watched : said.watches)
            if (Node* seen = node(watched.node))
                linksOf(*m_writers, *seen).readers.push_back({output, watched.output});
    }
}

void Scene::refreshWriters() {
    m_writersStale = false;
    std::vector<NodeHandle>& writers = m_writers->writers;
    const std::size_t before = writers.size();
    writers.erase(std::remove_if(writers.begin(), writers.end(),
                                 [this](NodeHandle n) { return !isValid(n); }),
                  writers.end());
    std::vector<WriterDeclaration> now = declareAll(*this, *m_writers);
    if (before == writers.size() &&
        allSame(now, m_writers->declared, [](const auto& a, const auto& b) { return a.sameAs(b); }))
        return;
    m_writers->declared = std::move(now);
    const std::vector<KeptValue> kept = takeLinks(*this, *m_writers);
    std::vector<Plug> changedPlugs;
    linkWriters(changedPlugs);
    for (const KeptValue& value : kept) {
        Node& written = *node(value.plug.node);
        if (written.writerLinks)
            keepOwn(written, value.plug, value.own);
        changedPlugs.push_back(value.plug);
    }
    ++m_structure;
    for (const Plug& plug : changedPlugs)
        changed(plug);
}

void Scene::keepOwn(Node& node, const Plug& plug, double value) {
    for (WriterLinks::Written& w : node.writerLinks->written)
        if (w.attr == plug.attr)
            w.own = value;
}

}  // namespace torvel
