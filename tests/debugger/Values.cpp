// A program with values that a debugger has to show; tests/debugger/check looks at them.

#include <brindle/arrange/Box.h>
#include <brindle/arrange/FunctionLeaf.h>
#include <brindle/filesupport/File.h>
#include <brindle/geom/Rect.h>
#include <brindle/proplist/PropList.h>
#include <brindle/time/TickTime.h>
#include <brindle/utility/Guid.h>
#include <brindle/utility/RefCountedObject.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>

using namespace brindle;

namespace {

class Counted : public utility::RefCountedObject {};

// The debugger stops here.
void Show() {}

} // namespace

int main() {
    UTF16String const wide = u"Pier \u00E4\U0001F600"_utf16;
    UTF16String const broken(1, 0xD800);
    UTF8String const narrow = "Bin \"1\"\n"_utf8;
    UTF8String const empty;
    time::TickTime const time(-90, time::kFrameRate_VideoPAL);
    time::FrameRate const ntsc = time::kFrameRate_VideoNTSC;
    time::FrameRate const half = time::kFrameRate_Video12_5;
    utility::Guid const guid(_GUID{0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}});
    filesupport::File const file(u"C:\\tmp\\a.mov"_utf16);
    geom::RectT<float> const rectangle{1, 2, 3, 4};
    proplist::PropList list;
    list.Set("volume", 0.5);
    list.Set("title", u"Pier");
    list.Set("name", "Bin 1");
    list.Set("visible", true);
    list.Set("rates", std::vector<int>{24, 25});
    list.NewSubList("window")->Set("width", 1LL << 40);
    arrange::FunctionLeaf leaf({60, 20});
    arrange::Box<arrange::Row> row({&leaf}, 4);
    row.Arrange({0, 0, 320, 40});
    arrange::IArrangeable& leafNode = leaf;
    arrange::IArrangeable& rootNode = row;
    boost::intrusive_ptr<utility::RefCountedObject> const counted(new Counted);
    boost::intrusive_ptr<utility::RefCountedObject> const null;
    Show();
    bool const isUsed =
        leafNode.LimitsReached() + rootNode.LimitsReached() == 0 && time < time::kTickTime_Zero;
    return isUsed && rectangle.x > 0 && ntsc != half && guid == guid && !file.Exists() ? 0 : 1;
}
