// The recorded pages of cases/ as tests of this program.

#include "plugin/fixtures/page_runner.h"

namespace torvel::test {

namespace {

PageTools lendTools(PluginScene&) {
    return {};
}

const bool kRegistered = registerPages<PluginScene>("tests/plugin/cases", lendTools);

}  // namespace

}  // namespace torvel::test
