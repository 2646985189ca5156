#include <brindle/arrange/LayoutTree.h>
#include <brindle/arrange/TreeSizes.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/proplist/PropList.h>

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <list>
#include <random>
#include <string>
#include <vector>

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

TEST(LayoutTree, AnyListIsATreeOrAnErrorWithThePathOfTheKey) {
    char const* const kKeys[] = {"kind", "children", "width", "spacing", "name", "margins", ""};
    double const kNumbers[] = {0, 1e9, 1e10, -1, std::nan(""), INFINITY, 5e-324};
    std::mt19937 random(8);
    int trees = 0;
    int refusedNaN = 0;
    for (int round = 0; round < 5000; ++round) {
        PropList list;
        list.SetValue("kind"_utf8, "Flipping"_utf8);
        PropList& leaf = NewLeaf(*list.NewSubList("children"_utf8), "7", "leaf");
        for (PropList* const changed : {&list, &leaf}) {
            std::string const text = kKeys[random() % std::size(kKeys)];
            UTF8String const key(text.begin(), text.end());
            switch (changed == &leaf ? random() % 4 : random() % 16) {
            case 0:
                changed->SetValue(key, "\xC3"_utf8);
                break;
            case 1:
                changed->NewSubList(key)->SetValue(key, std::list<double>{1, 2});
                break;
            case 2:
                changed->SetValue(key, kNumbers[random() % std::size(kNumbers)]);
            }
            if (list.GetSubList("children"_utf8) == nullptr) {
                break; // the leaf is gone, too
            }
        }
        try {
            LayoutTree tree(ReadLayoutDescription(list));
            tree.Root().Arrange({0, 0, 20, 20});
            EXPECT_TRUE(std::isfinite(MinimumSize(tree.Root()).x));
            ++trees;
        } catch (layout_error const& error) {
            refusedNaN += std::string(error.what()) ==
                          "children/7/width: a number from 0 to 1e9 is expected, not nan";
        }
    }
    EXPECT_GT(trees, 1000);
    EXPECT_GT(refusedNaN, 10);
}

TEST(LayoutFile, IsLoadedOrRefusedWithItsPath) {
    auto const load = [](std::string const& inName) {
        return LoadLayoutDescription(
            filesupport::FileFromNative(BRINDLE_SOURCES "/examples/" + inName));
    };
    EXPECT_EQ(load("layouts/mixer.xml").kind, kGroupArrangementType_Row);
    EXPECT_THROW(load("data/digits"), layout_error);
    EXPECT_THROW(load("none.xml"), layout_error);
}

} // namespace

} // namespace brindle::arrange
