#include "host/verbs/Verbs.h"

#include "host/commandline/EscapedText.h"
#include "host/commandline/PlainText.h"
#include "host/files/FileErrors.h"
#include "host/files/Output.h"
#include "host/layout/Picture.h"
#include "host/plist/LoadList.h"

#include <brindle/arrange/ExplainLayout.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <charconv>
#include <sstream>

namespace brindle::host {

namespace {

using namespace layout;

constexpr float kPageMargin = 24;

geom::PointT<float> SizeFromText(std::string const& inText) {
    geom::PointT<float> size;
    char const* const end = inText.data() + inText.size();
    auto const [middle, widthError] = std::from_chars(inText.data(), end, size.x);
    if (widthError == std::errc() && middle != end && *middle == 'x') {
        auto const [last, heightError] = std::from_chars(middle + 1, end, size.y);
        // A comparison with NaN is false.
        if (heightError == std::errc() && last == end && size.x > 0 && size.y > 0 &&
            std::max(size.x, size.y) <= arrange::kLargestSize) {
            return size;
        }
    }
    throw usage_error(
        "WIDTHxHEIGHT takes two numbers above 0, up to 1e9, such as 640x480.5, not '" + inText +
        "'");
}

/// Writes a line for each node.
void PrintPlaces(std::vector<Shape> const& inShapes) {
    std::string path;
    std::vector<std::size_t> pathLengths; // of the paths of the nodes on the way, by level
    std::string line;
    for (Shape const& shape : inShapes) {
        if (shape.kind == Shape::Kind::kSeparator) {
            continue;
        }
        pathLengths.resize(shape.level);
        path.resize(pathLengths.empty() ? 0 : pathLengths.back());
        if (shape.level != 0) {
            path.append(path.empty() ? "" : "/").append(std::to_string(shape.key));
        }
        pathLengths.push_back(path.size());
        line.clear();
        for (float const number :
             {shape.place.x, shape.place.y, shape.place.width, shape.place.height}) {
            line.append(NumberText(number)).append(1, ' ');
        }
        line.append(1, ' ').append(path.empty() ? "." : path);
        if (!shape.label.empty()) {
            line.append("  ").append(EscapedText(shape.label));
        }
        utility::streams::Out << line << '\n';
    }
}

/// Writes a line for each alternative.
void Explain(arrange::IArrangeable& ioRoot, geom::PointT<float> const& inSize) {
    utility::streams::Out << arrange::ExplainLayout(ioRoot, inSize).c_str();
}

void WritePicture(Picture const& inPicture, std::string const& inPath) {
    geom::RectT<float> const& bounds = inPicture.bounds;
    SvgPage page(std::string(kPageStyles) + kPictureStyles);
    DrawPicture(page, inPicture, kPageMargin - bounds.x, kPageMargin - bounds.y);
    std::ostringstream text;
    page.Write(text, bounds.width + 2 * kPageMargin, bounds.height + 2 * kPageMargin);
    Output output(inPath);
    output.WriteText(text.str());
    output.Commit();
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    auto const& operands = inArguments.Operands();
    if (operands.size() != 2) {
        throw usage_error("layout needs a FILE and WIDTHxHEIGHT");
    }
    std::string const& path = operands[0];
    auto const size = SizeFromText(operands[1]);
    std::string const output = inArguments.Text("svg", "");
    if (inArguments.Has("svg") && output.empty()) {
        throw usage_error("--svg takes a file");
    }
    if (inArguments.Has("svg") && inArguments.Has("explain")) {
        throw usage_error("--explain draws nothing");
    }
    try {
        proplist::PropList list;
        LoadList(path, list);
        PicturedTree tree(arrange::ReadLayoutDescription(list));
        if (inArguments.Has("explain")) {
            Explain(tree.Root(), size);
            return;
        }
        Picture const picture = TakePicture(tree, size.x, size.y);
        if (output.empty()) {
            PrintPlaces(picture.shapes);
        } else {
            WritePicture(picture, output);
        }
        if (picture.leftOut != 0) {
            ioDiagnostics.Report(path, "the tree is too large: " + std::to_string(picture.leftOut) +
                                           " nodes had to be left out");
        }
    } catch (unreadable_error const& error) {
        ioDiagnostics.Report(path, error.what());
    } catch (arrange::layout_error const& error) {
        ioDiagnostics.Report(path, error.what());
    } catch (unwritable_error const& error) {
        ioDiagnostics.Report(output, error.what());
    }
}

} // namespace

Verb const kLayoutVerb = {
    "layout",
    "FILE WIDTHxHEIGHT [--svg=OUT | --explain]",
    "the places of a tree of rectangles in a rectangle",
    "Arranges the tree that the property list in FILE describes in a rectangle of this size,\n"
    "and writes a line for every node: x, y, width, height, two blanks, its path, which is\n"
    "the keys of the children from the root down with slashes between them, \".\" for the\n"
    "root; then two blanks and its label, if it has one. In a label backslashes and control\n"
    "characters are written as \\\\, \\n, \\u001b and so on. A group's place is that of its\n"
    "children and their margins together. The FILE - is standard input.\n"
    "\n"
    "  --svg=OUT  draws the tree into the file OUT instead; - for standard output\n"
    "  --explain  writes a line for each alternative of the root instead: its form, its\n"
    "             minimum and best size, whether it fits, and by which rule the chosen one,\n"
    "             which is marked with an asterisk, beat it\n"
    "\n"
    "A node is a list of these keys, and any other key is an error; it is a group if it has a\n"
    "kind or children. Sizes are numbers from 0 to 1e9, of any type.\n"
    "\n"
    "  label            a text\n"
    "  name             a text that no other node has: a program that loads the tree finds\n"
    "                   the node by it. A leaf with a name may leave its sizes to the program.\n"
    "  margins          a number, or a list: left, top, right, bottom\n"
    "\n"
    "  width, height    of a leaf: the best size, or a list: best, minimum, expandable,\n"
    "                   maximum\n"
    "  role             of a leaf, for the picture: button, field, label, meter, picture,\n"
    "                   spacer\n"
    "\n"
    "  kind             of a group: Row, Column, Flipping, HorizontalWrapping,\n"
    "                   VerticalWrapping, AutoLayout\n"
    "  children         of a group: a list of nodes under the keys 1, 2, 3 and so on; they\n"
    "                   may leave numbers out\n"
    "  spacing          of a group: a number, or a list: horizontal, vertical\n"
    "  alignment        of a group: a list: horizontal (left, centre, right), vertical (top,\n"
    "                   centre, bottom)\n"
    "  separators       of a group: true or false\n",
    {"explain", "help", "svg="},
    Run,
};

} // namespace brindle::host
