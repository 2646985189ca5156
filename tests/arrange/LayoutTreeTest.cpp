#include <brindle/arrange/LayoutTree.h>
#include <brindle/arrange/TreeSizes.h>
#include <brindle/proplist/PropList.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

namespace brindle::arrange {

namespace {

using geom::PointT;
using geom::RectT;
using proplist::PropList;

PropList& NewLeaf(PropList& ioChildren, std::string const& inKey, std::string const& inName) {
    PropList& leaf = *ioChildren.NewSubList(UTF8String(inKey.begin(), inKey.end()));
    leaf.SetValue("name"_utf8, UTF8String(inName.begin(), inName.end()));
    return leaf;
}

TEST(LayoutTree, AProgramBindsItsWidgetsByName) {
    PropList list;
    list.SetValue("kind"_utf8, "Row"_utf8);
    list.SetValue("name"_utf8, "bar"_utf8);
    list.SetValue("margins"_utf8, 2.0);
    list.SetValue("spacing"_utf8, 4.0);
    PropList& children = *list.NewSubList("children"_utf8);
    NewLeaf(children, "1", "icon").SetValue("width"_utf8, 16);
    NewLeaf(children, "2", "start");
    NewLeaf(children, "10", "stop");
    LayoutTree tree(ReadLayoutDescription(list));
    EXPECT_EQ(tree.LeafNames(), (std::vector<std::string>{"icon", "start", "stop"}));
    EXPECT_EQ(tree.GroupNames(), (std::vector<std::string>{"bar"}));

    RectT<float> start;
    tree.Leaf("start").SetSizes([] { return LeafSizes{40, 20}; });
    tree.Leaf("start").SetPlace([&](RectT<float> const& inRect) { start = inRect; });
    tree.Leaf("stop").SetSizes({30, 20});
    EXPECT_EQ(MinimumSize(tree.Root()), (PointT<float>{98, 24}));
    tree.SetShown("icon", false);
    tree.SetShown("bar", false); // the root
    EXPECT_EQ(MinimumSize(tree.Root()), (PointT<float>{78, 24}));
    tree.Root().Arrange({0, 0, 100, 24});
    EXPECT_EQ(start, (RectT<float>{2, 2, 40, 20}));

    EXPECT_TRUE(tree.Group("bar").Remove(tree.Leaf("stop")));
    EXPECT_EQ(tree.FindLeaf("stop"), nullptr);
    EXPECT_THROW(tree.Leaf("stop"), layout_error);
    EXPECT_THROW(tree.Group("start"), layout_error);
    EXPECT_THROW(tree.SetShown("stop", true), layout_error);
}

/// Puts values of any type under keys of the form and others, at any level.
void Fill(PropList& outList, std::mt19937& ioRandom, int inLevel) {
    static char const* const kKeys[] = {"kind",  "children", "width",      "height", "spacing",
                                        "name",  "margins",  "separators", "best",   "maximum",
                                        "label", "1",        "2",          "",       "expandable"};
    static double const kNumbers[] = {0, 1, 1e9, 1e10, -1, std::nan(""), INFINITY, 5e-324};
    static char const* const kTexts[] = {"Row", "AutoLayout", "left", "", "\xC3"};
    // A valid leaf or group, in which something is then replaced.
    outList.SetValue("width"_utf8, 1.0);
    outList.SetValue("height"_utf8, 1.0);
    if (ioRandom() % 2 == 0) {
        outList.Clear();
        outList.SetValue("kind"_utf8, "Flipping"_utf8);
        Fill(*outList.NewSubList("children"_utf8)->NewSubList("7"_utf8), ioRandom, inLevel + 1);
    }
    for (auto change = ioRandom() % 3; change > 0; --change) {
        std::string const key = kKeys[ioRandom() % std::size(kKeys)];
        UTF8String const wrong(key.begin(), key.end());
        std::string const text = kTexts[ioRandom() % std::size(kTexts)];
        switch (ioRandom() % 5) {
        case 0:
            outList.SetValue(wrong, kNumbers[ioRandom() % std::size(kNumbers)]);
            break;
        case 1:
            outList.SetValue(wrong, UTF8String(text.begin(), text.end()));
            break;
        case 2:
            outList.SetValue(wrong, ioRandom() % 2 == 0);
            break;
        case 3:
            outList.SetValue(wrong, std::list<double>{1, 2});
            break;
        default:
            if (inLevel < 4) {
                Fill(*outList.NewSubList(wrong), ioRandom, inLevel + 1);
            }
        }
    }
}

TEST(LayoutTree, AnyListIsATreeOrAnErrorWithAReason) {
    std::mt19937 random(8);
    int trees = 0;
    int errors = 0;
    for (int round = 0; round < 5000; ++round) {
        PropList list;
        Fill(list, random, 0);
        try {
            LayoutTree tree(ReadLayoutDescription(list));
            PointT<float> const least = MinimumSize(tree.Root());
            EXPECT_TRUE(std::isfinite(least.x));
            EXPECT_GE(least.x, 0);
            tree.Root().Arrange({0, 0, 20, 20});
            ++trees;
        } catch (layout_error const& error) {
            EXPECT_NE(std::string(error.what()).find(": "), std::string::npos) << error.what();
            ++errors;
        }
    }
    EXPECT_GT(trees, 100);
    EXPECT_GT(errors, 100);
}

TEST(LayoutTree, RefusesNumbersThatAreNoneWithTheirPath) {
    for (double const number : {std::nan(""), static_cast<double>(INFINITY), -1.0}) {
        PropList list;
        list.SetValue("kind"_utf8, "Row"_utf8);
        NewLeaf(*list.NewSubList("children"_utf8), "3", "x").SetValue("width"_utf8, number);
        try {
            ReadLayoutDescription(list);
            ADD_FAILURE() << number;
        } catch (layout_error const& error) {
            EXPECT_EQ(std::string(error.what()).find("children/3/width: a number from 0 to 1e9"),
                      0u)
                << error.what();
        }
    }
}

} // namespace

} // namespace brindle::arrange
