#include "Trees.h"

#include <utility>

namespace layout_gallery {

using namespace brindle::arrange;
using Children = std::vector<NodeDescription>;

namespace {

NodeDescription Leaf(Role inRole, std::string inLabel, float inWidth, float inHeight) {
    NodeDescription leaf;
    leaf.role = inRole;
    leaf.label = std::move(inLabel);
    leaf.width.best = inWidth;
    leaf.height.best = inHeight;
    return leaf;
}

NodeDescription Button(std::string inLabel, float inWidth = 36, float inHeight = 28) {
    return Leaf(Role::kButton, std::move(inLabel), inWidth, inHeight);
}

NodeDescription WideTo(float inMaximum, NodeDescription inLeaf) {
    inLeaf.width.isExpandable = true;
    inLeaf.width.maximum = inMaximum;
    return inLeaf;
}

NodeDescription HighTo(float inMaximum, NodeDescription inLeaf) {
    inLeaf.height.isExpandable = true;
    inLeaf.height.maximum = inMaximum;
    return inLeaf;
}

constexpr float kAnything = std::numeric_limits<float>::infinity();

NodeDescription Wide(NodeDescription inLeaf) {
    return WideTo(kAnything, std::move(inLeaf));
}

NodeDescription High(NodeDescription inLeaf) {
    return HighTo(kAnything, std::move(inLeaf));
}

NodeDescription Spacer() {
    return Wide(Leaf(Role::kSpacer, "", 16, 28));
}

NodeDescription Group(GroupArrangementType inKind, float inSpacing, Children inChildren) {
    NodeDescription group;
    group.kind = inKind;
    group.spacing = {inSpacing, inSpacing};
    group.children = std::move(inChildren);
    return group;
}

NodeDescription Centred(NodeDescription inGroup) {
    inGroup.horizontalAlignment = kAlignmentHorizontal_Centre;
    inGroup.verticalAlignment = kAlignmentVertical_Centre;
    return inGroup;
}

Exhibit AcrossThePage(Exhibit inExhibit) {
    inExhibit.isWide = true;
    return inExhibit;
}

Exhibit WithWidths(Exhibit inExhibit) {
    inExhibit.showsWidths = true;
    return inExhibit;
}

Exhibit Window() {
    NodeDescription const picture = High(Wide(Leaf(Role::kPicture, "picture", 150, 84)));
    NodeDescription const tools = Group(kGroupArrangementType_HorizontalWrapping, 6,
                                        {Button("cut"), Button("trim"), Button("slip"),
                                         Button("roll"), Button("link"), Button("mark")});
    NodeDescription const meters = Group(
        kGroupArrangementType_Flipping, 6,
        {High(Wide(Leaf(Role::kMeter, "L", 20, 20))), High(Wide(Leaf(Role::kMeter, "R", 20, 20)))});
    return AcrossThePage(
        {"window",
         "A window: choices inside of choices",
         "An auto layout breaks picture, tools and meters into lines; the six tools wrap by "
         "themselves, and the two meters flip.",
         Group(kGroupArrangementType_AutoLayout, 10, {picture, tools, meters}),
         {{272, 100}, {270, 150}, {160, 190}, {240, 190}}});
}

Exhibit Mixer() {
    auto const strip = [](std::string const& inName) {
        return Group(kGroupArrangementType_Column, 4,
                     {Wide(Leaf(Role::kLabel, inName, 32, 18)),
                      High(Wide(Leaf(Role::kMeter, "", 32, 30))), Wide(Button("mute", 32, 20))});
    };
    return {"mixer",
            "A mixer: columns in a row",
            "The strips share the width; in each of them the meter takes the height.",
            Group(kGroupArrangementType_Row, 10, {strip("mic"), strip("fx"), strip("music")}),
            {{116, 150}, {210, 150}, {116, 90}}};
}

Exhibit Toolbar() {
    return {"toolbar",
            "A toolbar: horizontal wrapping",
            "The same six buttons in one row, in two rows, and in a column.",
            Centred(Group(kGroupArrangementType_HorizontalWrapping, 6,
                          {Button("new"), Button("open"), Button("save"), Button("cut"),
                           Button("copy"), Button("paste")})),
            {{250, 36}, {128, 70}, {44, 204}}};
}

Exhibit Inspector() {
    auto const property = [](std::string const& inLabel, std::string const& inValue) {
        return Group(
            kGroupArrangementType_HorizontalWrapping, 4,
            {Leaf(Role::kLabel, inLabel, 56, 20), Wide(Leaf(Role::kField, inValue, 70, 20))});
    };
    return {"inspector",
            "An inspector panel: wrapping groups in a column",
            "Where the width is short, each field moves below its label.",
            Group(kGroupArrangementType_Column, 10,
                  {property("name", "Interview"), property("rate", "29.97"),
                   property("length", "00:04:12;08")}),
            {{260, 80}, {150, 152}}};
}

Exhibit Transport() {
    return {"transport",
            "A transport bar: row with flexible spacers",
            "The spacers share what is left, so the ends stay at the ends.",
            Group(kGroupArrangementType_Row, 6,
                  {Button("back"), Button("play"), Button("next"), Spacer(),
                   Leaf(Role::kField, "01:00:04;12", 88, 28), Spacer(), Button("loop"),
                   Button("full")}),
            {{480, 28}, {380, 28}, {342, 28}}};
}

Exhibit Separators() {
    NodeDescription tree = Group(kGroupArrangementType_HorizontalWrapping, 14,
                                 {Button("bold", 44), Button("italic", 44), Button("left", 44),
                                  Button("right", 44), Button("link", 44)});
    tree.hasSeparators = true;
    return {"separators",
            "Separators: one for each gap",
            "They stand upright between buttons and lie between lines.",
            std::move(tree),
            {{276, 28}, {160, 70}}};
}

Exhibit Margins() {
    NodeDescription title = Wide(Leaf(Role::kLabel, "title", 60, 22));
    NodeDescription body = High(Wide(Leaf(Role::kField, "text", 60, 30)));
    body.margins = {24, 0, 0, 0};
    NodeDescription ok = Wide(Button("OK", 60, 24));
    ok.margins = {0, 12, 0, 0};
    NodeDescription tree =
        Group(kGroupArrangementType_Column, 6, {std::move(title), std::move(body), std::move(ok)});
    tree.margins = {16, 16, 16, 16};
    return {"margins",
            "Margins: of the group and of its leaves",
            "16 around everything, 24 to the left of the text, 12 above the button.",
            std::move(tree),
            {{250, 150}, {150, 180}}};
}

Exhibit Alignment() {
    auto const aligned = [](AlignmentHorizontal inHorizontal, AlignmentVertical inVertical) {
        return [=](GroupNode& ioRoot) { ioRoot.SetAlignment(inHorizontal, inVertical); };
    };
    return {"alignment",
            "Alignment: where what is left goes",
            "Three leaves of different heights, aligned on both axes.",
            Group(kGroupArrangementType_Row, 6,
                  {Button("A", 24, 24), Button("B", 24, 48), Button("C", 24, 36)}),
            {{140, 84, "left, top", aligned(kAlignmentHorizontal_Left, kAlignmentVertical_Top)},
             {140, 84, "centre", aligned(kAlignmentHorizontal_Centre, kAlignmentVertical_Centre)},
             {140, 84, "right, bottom",
              aligned(kAlignmentHorizontal_Right, kAlignmentVertical_Bottom)}}};
}

Exhibit Flip() {
    return {"flipping",
            "Flipping: a row or a column",
            "The viewer and its list stand side by side or one below the other.",
            Group(kGroupArrangementType_Flipping, 8,
                  {High(Wide(Leaf(Role::kPicture, "viewer", 120, 68))),
                   High(Wide(Leaf(Role::kField, "list", 90, 68)))}),
            {{280, 110}, {140, 190}}};
}

Exhibit HorizontalWrap() {
    return {"horizontal-wrapping",
            "Horizontal wrapping: leaves of any width",
            "Of the ways that fit, the one whose lines waste least.",
            Group(kGroupArrangementType_HorizontalWrapping, 6,
                  {Button("city", 44, 22), Button("night", 50, 22), Button("interview", 78, 22),
                   Button("rain", 44, 22), Button("crowd", 56, 22), Button("car", 38, 22),
                   Button("archive", 62, 22)}),
            {{220, 50}, {120, 106}, {102, 134}}};
}

Exhibit VerticalWrap() {
    auto const entry = [](std::string const& inLabel) {
        return WideTo(90, Leaf(Role::kField, inLabel, 64, 20));
    };
    return {"vertical-wrapping",
            "Vertical wrapping: columns of entries",
            "The lower the rectangle, the more columns.",
            Group(kGroupArrangementType_VerticalWrapping, 4,
                  {entry("clip 1"), entry("clip 2"), entry("clip 3"), entry("clip 4"),
                   entry("clip 5"), entry("clip 6")}),
            {{80, 144}, {136, 76}, {208, 48}}};
}

Exhibit Dynamic() {
    auto const become = [](GroupArrangementType inKind) {
        return [=](GroupNode& ioRoot) { ioRoot.SetArrangementType(inKind, nullptr); };
    };
    return AcrossThePage(
        {"dynamic",
         "A dynamic group: six kinds in turn",
         "One group, whose kind is changed from view to view. Row, column and flipping are too "
         "long "
         "here; the wrapping kinds fit.",
         Group(
             kGroupArrangementType_Row, 4,
             {Button("1", 24, 20), Button("2", 36, 20), Button("3", 24, 32), Button("4", 36, 32)}),
         {{116, 100, "Row", become(kGroupArrangementType_Row)},
          {116, 100, "Column", become(kGroupArrangementType_Column)},
          {116, 100, "Flipping", become(kGroupArrangementType_Flipping)},
          {116, 100, "HorizontalWrapping", become(kGroupArrangementType_HorizontalWrapping)},
          {116, 100, "VerticalWrapping", become(kGroupArrangementType_VerticalWrapping)},
          {116, 100, "AutoLayout", become(kGroupArrangementType_AutoLayout)}}});
}

Exhibit Shrinking() {
    auto const field = [](std::string const& inLabel) {
        NodeDescription leaf = Wide(Leaf(Role::kField, inLabel, 160, 24));
        leaf.width.minimum = 80;
        return leaf;
    };
    return WithWidths(
        {"shrinking",
         "Shrinking: from best to minimum, and below",
         "Fields are best 160 wide and keep 80; what does not fit overflows.",
         Group(kGroupArrangementType_Column, 6, {field("name"), field("take"), field("notes")}),
         {{160, 84}, {110, 84}, {54, 54}}});
}

Exhibit Growing() {
    return WithWidths(
        {"growing",
         "Growing: in proportion, up to a limit",
         "From 40, 80 and 40; the last one stops at 90 and the others share its part.",
         Group(kGroupArrangementType_Row, 6,
               {Wide(Button("", 40)), Wide(Button("", 80)), WideTo(90, Button("", 40))}),
         {{172, 28}, {292, 28}, {412, 28}}});
}

} // namespace

std::vector<Exhibit> Exhibits() {
    return {Window(),    Toolbar(),   Flip(),       HorizontalWrap(), VerticalWrap(),
            Inspector(), Mixer(),     Transport(),  Margins(),        Growing(),
            Shrinking(), Alignment(), Separators(), Dynamic()};
}

} // namespace layout_gallery
