// SPDX-License-Identifier: Apache-2.0
// The tables of variables and aliases are for all threads at once, the environment behind exported ones included.
#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/kit/KIT_EnvControl.h>
#include <orvlang/platform/osl/OrvaneEnvironment.h>
#include <orvlang/symbols/CMD_AliasTable.h>
#include <orvlang/symbols/CMD_VariableTable.h>

namespace {

TEST(SymbolThreads, AllOperationsAtOnce) {
    CMD_Manager manager("threads");
    CMD_VariableTable local;
    CMD_VariableTable &global = *manager.getGlobalVariables();
    CMD_AliasTable &aliases = *manager.getAliases();
    static const char *const theNames[] = { "one", "two", "three", "four" };
    // A value is one letter many times, so that half of one can be told.
    const std::string values[] = { "a", std::string(300, 'b'), std::string(5000, 'c') };
    std::atomic<int> torn = 0;
    const auto work = [&](unsigned seed) {
        KIT_String text;
        for (int i = 0; i < 3000; ++i) {
            seed = seed * 1103515245 + 12345;
            const char *name = theNames[seed / 65536 % 4];
            const std::string &value = values[seed / 1048576 % 3];
            CMD_VariableTable &table = seed & 4096 ? global : local;
            const unsigned operation = seed / 256 % 8;
            KIT_StringArray names;
            if (operation == 0) {
                table.setVariable(name, value.c_str(), (seed & 8192) != 0);
                aliases.setAlias(name, value.c_str());
            } else if (operation == 1) {
                table.destroyVariable(name);
                aliases.destroyAlias(name);
            } else if (operation == 2) {
                table.getVariableNames(names, static_cast<int>(seed & 1));
                aliases.getAliasNames(names);
            } else if (operation == 3) {
                table.clearDirtyFlags();
                manager.destroyAliases();
            } else if (operation == 4) {
                int whole = 0;
                table.getVariable(name, whole);
                OrvaneGetenv(name);
                KIT_EnvControl::getInt(KIT_EnvControl::PlainInput);
            } else if (table.getVariable(name, text) || aliases.getAlias(name, text)) {
                torn += text.view().find_first_not_of(text[0]) != std::string_view::npos;
            }
        }
    };
    std::vector<std::thread> threads;
    for (unsigned i = 1; i <= 4; ++i)
        threads.emplace_back(work, i * 7919);
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(torn, 0);
    for (const char *name : theNames)
        global.destroyVariable(name);
}

}   // namespace
