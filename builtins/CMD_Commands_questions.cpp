// SPDX-License-Identifier: Apache-2.0
// The commands that ask the user. The dialogue goes to the process's own output, so that the answer alone is the
// command's output and a script can catch it while the user still sees the question. The answer does not pass through
// the manager: it is not a line of the language. The end of the input and an interrupt of the wait do not count as an
// answer.
#include <orvlang/engine/CMD_Manager.h>

#include <iostream>

#include <orvlang/builtins/CMD_Commands.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/edit/KIT_CmdLineReader.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/kit/KIT_OStrStream.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>

namespace {

constexpr int theNoChoice = -1;

/// Returns the value of an option; empty without the option.
std::string_view valueOf(const CMD_Args &args, char option) {
    const char *value = args.argp(option);
    return value ? value : "";
}

void showHeader(const CMD_Args &args, std::string_view text) {
    const std::string_view title = valueOf(args, 't');
    const std::string_view help = valueOf(args, 'h');
    if (!title.empty())
        std::cout << "+++ " << title << " +++" << std::endl;
    if (!text.empty())
        std::cout << text << std::endl;
    if (!help.empty())
        std::cout << '(' << help << ')' << std::endl;
    std::cout.flush();
}

void showChoice(int number, const char *text) {
    std::cout << number << ": " << text << std::endl;
}

/// False when there is none.
bool ask(std::string_view question, KIT_String &answer) {
    std::cout << question << std::flush;
    KIT_WorkBuffer line;
    const bool answered = KIT_CmdLineReader(nullptr, nullptr).readLine(line);
    line.copyIntoString(answer);
    return answered;
}

void complain() {
    std::cout << "invalid choice\n";
}

bool isChoice(const KIT_String &word, int count, int &choice) {
    return word.isInteger(&choice) && choice >= 0 && choice < count;
}

/// Returns the number of the button that the user chose; an empty line means the preset one, unless that is theNoChoice.
int chooseButton(int count, int preset) {
    KIT_WorkBuffer question("enter your choice: ");
    if (preset != theNoChoice)
        question.sprintf("enter your choice (default %d): ", preset);
    KIT_String answer;
    while (ask(question.view(), answer)) {
        int choice = theNoChoice;
        if (answer.isEmpty() && preset != theNoChoice)
            return preset;
        if (isChoice(answer, count, choice))
            return choice;
        complain();
    }
    complain();
    return theNoChoice;
}

/// Returns the button for an empty line; theNoChoice when `-d` is missing or does not name one.
int presetButton(const CMD_Args &args, int count) {
    const int preset = args.found('d') ? KITatoi(args.argp('d')) : theNoChoice;
    return preset >= 0 && preset < count ? preset : theNoChoice;
}

/// Whether each word of the answer is the number of an entry; then these are the choices.
bool parseChoices(const KIT_String &answer, int count, std::vector<int> &choices) {
    KIT_WorkArgs words;
    answer.tokenizeInPlace(words, ", \t");
    choices.clear();
    for (int i = 0; i < words.argc(); ++i) {
        int choice = theNoChoice;
        if (!isChoice(words[i], count, choice))
            return false;
        choices.push_back(choice);
    }
    return true;
}

/// Returns false without an answer.
bool askForChoices(int count, std::vector<int> &choices) {
    KIT_String answer;
    while (ask("enter your choice(s): ", answer)) {
        if (parseChoices(answer, count, choices))
            return true;
        complain();
    }
    return false;
}

/// Lets the user choose any number of the command's words, shown with their numbers.
void chooseSeveral(CMD_Args &args) {
    const int count = args.argc() - 1;
    showHeader(args, "Choose from the list using a comma separated list");
    for (int i = 0; i < count; ++i)
        showChoice(i, args.argv(i + 1));
    std::vector<int> choices;
    if (!askForChoices(count, choices))
        return;
    KIT_WorkBuffer result;
    for (const int choice : choices) {
        if (!result.isEmpty())
            result.append(' ');
        if (args.found('p'))
            result.protectedStrcat(args.argv(choice + 1), false);
        else
            result.strcat(std::to_string(choice));
    }
    args.out() << result.view() << std::endl;
}

void appendOption(KIT_WorkBuffer &line, const CMD_Args &args, char option) {
    if (!args.found(option))
        return;
    line.append(' ');
    line.append('-');
    line.append(option);
    line.append(' ');
    line.protectedStrcat(args.argp(option), false);
}

/// The line that asks by `message`, with the entries as its buttons. A comma would part an entry in two.
void buildQuestion(const CMD_Args &args, const std::vector<const char *> &entries, KIT_WorkBuffer &line) {
    line.strcpy("message ");
    appendOption(line, args, 't');
    appendOption(line, args, 'h');
    line.strcat(" -b ");
    const char *separator = "";
    for (const char *entry : entries) {
        KIT_String button(entry);
        button.substitute(",", " ", true);
        line.strcat(separator);
        line.protectedStrcat(button.c_str(), true);
        separator = ",";
    }
    line.strcat(" Choose one of the following");
}

/// Lets the user choose one word by whatever `message` is installed: a host may have a dialogue of its own.
void chooseOne(CMD_Args &args) {
    std::vector<const char *> entries;
    // `message` shows no empty buttons and does not count them.
    for (int i = 1; i < args.argc(); ++i) {
        if (*args.argv(i))
            entries.push_back(args.argv(i));
    }
    if (entries.empty())
        return;
    KIT_WorkBuffer line;
    buildQuestion(args, entries, line);
    KIT_OStrStream result;
    CMD_Manager::getContext()->execute(line.c_str(), 0, &result, nullptr, 0, true);
    result << std::ends;
    // No text at all means that `message` could not run.
    const int choice = *result.text() ? KITatoi(result.text()) : theNoChoice;
    if (choice >= 0 && static_cast<size_t>(choice) < entries.size())
        args.out() << entries[static_cast<size_t>(choice)] << std::endl;
}

}   // namespace

void CMD_Commands::cmd_message(CMD_Args &args) {
    KIT_WorkArgs buttons;
    if (args.found('b'))
        KIT_String::borrow(args.argp('b')).tokenizeInPlace(buttons, ",");
    KIT_WorkBuffer text;
    args.fillCommandLine(text, 1, false);
    showHeader(args, text.view());
    if (buttons.argc() == 0)
        return;
    for (int i = 0; i < buttons.argc(); ++i)
        showChoice(i, buttons[i]);
    const int choice = chooseButton(buttons.argc(), presetButton(args, buttons.argc()));
    if (args.found('p') && choice != theNoChoice)
        args.out() << buttons[choice] << std::endl;
    else
        args.out() << choice << std::endl;
}

void CMD_Commands::cmd_listchooser(CMD_Args &args) {
    if (args.argc() == 1)
        return;
    if (args.found('r'))
        chooseOne(args);
    else
        chooseSeveral(args);
}

void CMD_Commands::cmd_filechooser(CMD_Args &args) {
    if (args.found('n'))
        std::cout << args.argp('n') << std::endl;
    KIT_String name;
    if (ask("Enter filename: ", name))
        args.out() << name << std::endl;
}
