#include "Exhibits.h"

#include <brindle/filesupport/NativePath.h>
#include <brindle/proplist/PropListUtils.h>

#include <exception>
#include <stdexcept>

namespace layout_gallery {

namespace {

using namespace brindle::arrange;

auto Aligned(AlignmentHorizontal inHorizontal, AlignmentVertical inVertical) {
    return [=](LayoutDescription& ioRoot) {
        ioRoot.horizontalAlignment = inHorizontal;
        ioRoot.verticalAlignment = inVertical;
    };
}

auto Become(GroupArrangementType inKind) {
    return [=](LayoutDescription& ioRoot) { ioRoot.kind = inKind; };
}

Exhibit AcrossThePage(Exhibit inExhibit) {
    inExhibit.isWide = true;
    return inExhibit;
}

Exhibit WithWidths(Exhibit inExhibit) {
    inExhibit.showsWidths = true;
    return inExhibit;
}

std::vector<Exhibit> WithoutTrees() {
    return {
        AcrossThePage({"window",
                       "A window: choices inside of choices",
                       "An auto layout breaks picture, tools and meters into lines; the six tools "
                       "wrap by themselves, and the two meters flip.",
                       {{272, 100}, {270, 150}, {160, 190}, {240, 190}}}),
        {"toolbar",
         "A toolbar: horizontal wrapping",
         "The same six buttons in one row, in two rows, and in a column.",
         {{250, 36}, {128, 70}, {44, 204}}},
        {"flipping",
         "Flipping: a row or a column",
         "The viewer and its list stand side by side or one below the other.",
         {{280, 110}, {140, 190}}},
        {"horizontal-wrapping",
         "Horizontal wrapping: leaves of any width",
         "Of the ways that fit, the one whose lines waste least.",
         {{220, 50}, {120, 106}, {102, 134}}},
        {"vertical-wrapping",
         "Vertical wrapping: columns of entries",
         "The lower the rectangle, the more columns.",
         {{80, 144}, {136, 76}, {208, 48}}},
        {"inspector",
         "An inspector panel: wrapping groups in a column",
         "Where the width is short, each field moves below its label.",
         {{260, 80}, {150, 152}}},
        {"mixer",
         "A mixer: columns in a row",
         "The strips share the width; in each of them the meter takes the height.",
         {{116, 150}, {210, 150}, {116, 90}}},
        {"transport",
         "A transport bar: row with flexible spacers",
         "The spacers share what is left, so the ends stay at the ends.",
         {{480, 28}, {380, 28}, {342, 28}}},
        {"margins",
         "Margins: of the group and of its leaves",
         "16 around everything, 24 to the left of the text, 12 above the button.",
         {{250, 150}, {150, 180}}},
        WithWidths({"growing",
                    "Growing: in proportion, up to a limit",
                    "From 40, 80 and 40; the last one stops at 90 and the others share its part.",
                    {{172, 28}, {292, 28}, {412, 28}}}),
        WithWidths({"shrinking",
                    "Shrinking: from best to minimum, and below",
                    "Fields are best 160 wide and keep 80; what does not fit overflows.",
                    {{160, 84}, {110, 84}, {54, 54}}}),
        {"alignment",
         "Alignment: where what is left goes",
         "Three leaves of different heights, aligned on both axes.",
         {{140, 84, "left, top", Aligned(kAlignmentHorizontal_Left, kAlignmentVertical_Top)},
          {140, 84, "centre", Aligned(kAlignmentHorizontal_Centre, kAlignmentVertical_Centre)},
          {140, 84, "right, bottom",
           Aligned(kAlignmentHorizontal_Right, kAlignmentVertical_Bottom)}}},
        {"separators",
         "Separators: one for each gap",
         "They stand upright between buttons and lie between lines.",
         {{276, 28}, {160, 70}}},
        AcrossThePage(
            {"dynamic",
             "A dynamic group: six kinds in turn",
             "One group, whose kind is changed from view to view. Row, column and flipping are "
             "too long here; the wrapping kinds fit.",
             {{116, 100, "Row", Become(kGroupArrangementType_Row)},
              {116, 100, "Column", Become(kGroupArrangementType_Column)},
              {116, 100, "Flipping", Become(kGroupArrangementType_Flipping)},
              {116, 100, "HorizontalWrapping", Become(kGroupArrangementType_HorizontalWrapping)},
              {116, 100, "VerticalWrapping", Become(kGroupArrangementType_VerticalWrapping)},
              {116, 100, "AutoLayout", Become(kGroupArrangementType_AutoLayout)}}})};
}

LayoutDescription ReadTree(std::string const& inPath) {
    try {
        brindle::proplist::PropList list;
        brindle::proplist::utils::LoadPropList(
            brindle::filesupport::FileFromNative(inPath).FullPath(), list, false);
        return ReadLayoutDescription(list);
    } catch (std::exception const& error) {
        throw std::runtime_error(inPath + ": " + error.what());
    }
}

} // namespace

std::vector<Exhibit> Exhibits(std::string const& inDirectory) {
    std::vector<Exhibit> exhibits = WithoutTrees();
    for (Exhibit& exhibit : exhibits) {
        exhibit.tree = ReadTree(inDirectory + "/" + exhibit.name + ".xml");
    }
    return exhibits;
}

} // namespace layout_gallery
