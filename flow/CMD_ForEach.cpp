// SPDX-License-Identifier: Apache-2.0
#include <orvlang/flow/CMD_ForEach.h>

#include <string_view>

#include <orvlang/engine/CMD_Manager.h>

CMD_ForEach::~CMD_ForEach() = default;

int CMD_ForEach::setInitialState(CMD_Manager *, int argc, char *argv[]) {
    words.clear();
    const auto isWord = [argv](int i, std::string_view text) { return argv[i] == text; };
    if (argc < 4 || !isWord(2, "(") || !isWord(argc - 1, ")"))
        return 0;
    variable = argv[1];
    for (int i = 3; i < argc - 1; ++i)
        if (argv[i][0] != '\0')
            words.append(argv[i]);
    return 1;
}

int CMD_ForEach::evaluateCondition(CMD_Manager *manager) {
    const char *word = words[getIterationCount()];
    if (!word)
        return 0;
    statement.assign("set -l '").append(variable.view()).append("' = '").append(word).append("'");
    manager->execute(statement.c_str(), 0, nullptr, nullptr, 1, true);
    return 1;
}
