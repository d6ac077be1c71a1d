// SPDX-License-Identifier: Apache-2.0
// What the commands of the language write: set, alias, echo, shift, job, time, help.
#include "Cases.h"
#include "EngineFixture.h"

#include <orvlang/builtins/CMD_Columns.h>
#include <orvlang/platform/kit/KIT_PathSearch.h>

namespace {

class Commands : public EngineFixture {};

TEST_F(Commands, Table) {
    for (const auto &row : casesOf(ORVLANG_CASES "/commands.cases"))
        EXPECT_EQ(type(row.at(0)), row.at(1)) << row[0];
}

TEST_F(Commands, SetListsEverything) {
    type("set a = 'x y'\nsetenv a = z\nset -g zz = 9");
    const std::string text = type("set");
    EXPECT_TRUE(text.starts_with("FRAME\t= 1\nTIME\t= 0\nFPS\t= 24\n")) << text;
    EXPECT_NE(text.find("\nPI\t= 3.1415926535897932384\n"), std::string::npos);
    EXPECT_NE(text.find("\na\t= z\n"), std::string::npos);
    EXPECT_TRUE(text.ends_with("\nstatus\t= 0\nzz\t= 9\n")) << text;
}

TEST_F(Commands, Time) {
    const std::string seconds = type("time");
    EXPECT_EQ(seconds.find_first_not_of("0123456789.e-"), seconds.find("r\n")) << seconds;
    const std::string text = type("time 'echo a; nosuch'; echo $status");
    EXPECT_TRUE(text.starts_with("a\n{Unknown command: nosuch\n\r}")) << text;
    EXPECT_TRUE(text.ends_with("r\n1\n")) << text;
    EXPECT_EQ(script("time nosuch").substr(0, 36), "{s.cmd (1): Unknown command: nosuch\n");
}

std::string columns(std::initializer_list<std::string> cells, size_t width) {
    std::string line;
    for (const std::string &cell : cells)
        line += cell + std::string(width - std::min(width, cell.size()), ' ');
    return line + "\n";
}

TEST_F(Commands, ColumnsOfHelp) {
    const auto listing = [](const std::vector<std::string_view> &names) {
        std::ostringstream text;
        CMDprintColumns(text, names);
        return text.str();
    };
    static const std::string wide(25, 'w'), over(100, 'o');
    EXPECT_EQ(listing({ "a", "bb", "ccc" }), columns({ "a", "bb", "ccc" }, 4));
    EXPECT_EQ(listing({ "1", "2", "3", "4", "5", "6", "7", wide }),   // 3, 3 and 2 in the columns
              columns({ "1", "4", "7" }, 26) + columns({ "2", "5", wide }, 26) + columns({ "3", "6" }, 26));
    EXPECT_EQ(listing({ "b", over }), columns({ "b" }, 78) + over + "\n");
    for (const char *name : { "x10", "x9", "x1", "xX", "XYZZY", "coredump" })
        install(name, [](CMD_Args &) {});
    std::ostringstream text;
    for (const char *prefix : { "x", "XYZ", "core", "nosuch" })
        manager.commandDump(text, nullptr, prefix);
    EXPECT_EQ(text.str(), columns({ "x1", "x9", "x10", "xX" }, 4));
}

TEST_F(Commands, HelpFiles) {
    for (const char *command : { "hlp", "hlp2", "hlp10", "coredumps", "quiet" })
        install(command, [](CMD_Args &) {});
    std::filesystem::create_directories("job/help");
    std::filesystem::create_directories("orp/help");
    folder.write("job/help/command.help", "junk\nhlp10\n\tTen QUUX\n\n  more\nhlp\n  job hlp qúux "
                                          "quUx\n#\n  not of hlp, but elsething\nnosuch\n quux\nquiet");
    folder.write("orp/help/command.help", "hlp\n  orp hlp\n\n   \nhlp\n  again\nhlp2 x\n  QuUx\nhlp2\n  two\n");
    type("set -g ORP = " + folder.path() + "/orp; job " + folder.path() + "/job");
    KIT_PathSearch::rehashAll();
    static const struct {
        const char *line, *written;
    } theCases[] = {
        { "help hlp", "hlp\n  orp hlp\n\n   \n  job hlp qúux quUx\n" },
        { "help hlp1 hlp2", "hlp10\n\tTen QUUX\n\n  more\nhlp2\n  two\n" },
        { "help hl", "hlp   hlp2  hlp10 \n" },
        { "help -k quux", "hlp   hlp10 \n" },
        { "help -k ELSETHING", "hlp \n" },
        { "help -k HLP", "hlp   hlp2  hlp10 \n" },
        { "help -k quux quiet", "quiet\n" },
        { "help -k", "{Invalid option for command\n}" },
        { "alias h hlp10; alias hh hlp 2; help h hh",
          "'h' is an alias for hlp10\nhlp10\n\tTen QUUX\n\n  more\n'hh' is an alias for hlp 2\nNo installed "
          "command matches hlp 2\n" },
    };
    for (const auto &c : theCases)
        EXPECT_EQ(type(c.line), c.written) << c.line;
    std::ostringstream text;
    manager.printHelp(text, "help/nosuch", "hlp");
    manager.printHelp(text, "help/command.help", nullptr);
    manager.commandDump(text, "", "quie");
    EXPECT_TRUE(text.str().ends_with("quiet \n")) << text.str();
}

}   // namespace
