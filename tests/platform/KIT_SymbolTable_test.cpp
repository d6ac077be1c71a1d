// SPDX-License-Identifier: Apache-2.0
#include <map>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orvlang/platform/kit/KIT_LinkList.h>
#include <orvlang/platform/kit/KIT_SymbolTable.h>

TEST(SymbolTable, AgreesWithAMap) {
    std::vector<std::string> names;
    for (size_t i = 0; i < 400; ++i)
        names.push_back(std::string(i % 40, 'n') + std::to_string(i));
    names.push_back("");
    names.push_back(std::string("a\0b", 3));
    names.push_back(std::string("a\0c", 3));
    std::map<std::string, void *> model;
    KIT_SymbolTable table;
    std::mt19937 random(1);
    for (int step = 0; step < 50000; ++step) {
        const std::string &name = names[random() % names.size()];
        void *const thing = &names[random() % names.size()];
        switch (random() % 4) {
        case 0:
            EXPECT_EQ(table.addSymbol(std::string(name), thing), model.count(name) ? 0 : 1) << name;
            model[name] = thing;
            break;
        case 1:
            EXPECT_EQ(table.addBorrowedSymbol(name, thing), model.count(name) ? 0 : 1) << name;
            model[name] = thing;
            break;
        case 2:
            EXPECT_EQ(table.deleteSymbol(name), static_cast<int>(model.erase(name))) << name;
            break;
        default:
            KIT_Thing found(&table);
            ASSERT_EQ(table.findSymbol(name, found), static_cast<int>(model.count(name))) << name;
            EXPECT_EQ(found.get(), model.count(name) ? model[name] : &table) << name;
        }
        ASSERT_EQ(table.entries(), model.size());
    }
    size_t seen = 0;
    table.forEach([&](std::string_view name, KIT_Thing thing) {
        ++seen;
        EXPECT_EQ(model.at(std::string(name)), thing.get());
    });
    EXPECT_EQ(seen, model.size());
}

namespace {

class Node : public KIT_LinkNode {
public:
    Node(int value, int &alive) : number(value), count(alive) { ++count; }
    ~Node() override { --count; }
    void outTo(std::ostream &os) const override { os << number; }

private:
    int number;
    int &count;
};

std::string textOf(const KIT_LinkList &list) {
    std::ostringstream os;
    list.outTo(os);
    return os.str();
}

}   // namespace

TEST(LinkList, OwnsItsNodesInOrder) {
    int alive = 0;
    {
        KIT_LinkList list;
        list.reverse();
        list.destroy(nullptr);
        for (int i = 0; i < 5; ++i)
            list.append(std::make_unique<Node>(i, alive));
        list.destroy(list.getFirst());
        list.destroy(list.getLast());
        list.destroy(list.getFirst()->getNext());
        list.append(std::make_unique<Node>(9, alive));
        list.reverse();
        EXPECT_EQ(textOf(list), "KIT_LinkList\n9\n3\n1\n");
        EXPECT_EQ(alive, 3);
        list.destroyAll();
        list.append(std::make_unique<Node>(7, alive));
        EXPECT_EQ(textOf(list), "KIT_LinkList\n7\n");
        EXPECT_EQ(list.getFirst(), list.getLast());
    }
    EXPECT_EQ(alive, 0);
}
