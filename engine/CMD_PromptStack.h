// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <utility>
#include <vector>

/// The prompts of a manager. The oldest one stays.
class CMD_PromptStack {
public:
    explicit CMD_PromptStack(std::string first) : prompts{ { std::move(first), false } } {}

    /// A prompt that was set in safe mode is expanded in it. Null counts as empty text.
    void push(const char *text, bool isSafe) { prompts.push_back({ text ? text : "", isSafe }); }
    void set(const char *text, bool isSafe) { prompts.back() = { text ? text : "", isSafe }; }
    void pop() {
        if (prompts.size() > 1)
            prompts.pop_back();
    }

    const std::string &current() const { return prompts.back().text; }
    bool isCurrentSafe() const { return prompts.back().isSafe; }
    /// Returns the prompt at the index, 0 the oldest; outside of the stack the current one.
    const std::string &at(int index) const {
        const bool isInside = index >= 0 && static_cast<size_t>(index) < prompts.size();
        return isInside ? prompts[static_cast<size_t>(index)].text : current();
    }

private:
    struct Prompt {
        std::string text;
        bool isSafe;
    };

    std::vector<Prompt> prompts;
};
