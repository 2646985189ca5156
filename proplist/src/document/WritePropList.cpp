#include <brindle/proplist/PropListUtils.h>

#include "proplist/src/document/DocumentWriter.h"
#include "proplist/src/model/PropListAccess.h"
#include "proplist/src/model/PropNodes.h"

#include <brindle/xml/ReservedCharacters.h>

#include <algorithm>
#include <typeinfo>
#include <vector>

namespace brindle::proplist {

namespace impl {

namespace {

constexpr std::string_view kDeclaration = "<?xml version='1.0'?>\n<prop.map version='";

NumberDigits DigitsOf(utils::WriteOptions const& inOptions) noexcept {
    return inOptions.exactNumbers ? NumberDigits::kExact : NumberDigits::kSix;
}

/// Prevents copying a long text again and again as it grows.
void ReserveFor(UTF8String& ioText, PropNodeBlocks const& inNodes) {
    std::size_t const likelySize = ioText.size() + 96 * CountNodes(inNodes);
    if (ioText.capacity() < likelySize) {
        ioText.reserve(std::max(likelySize, 2 * ioText.capacity()));
    }
}

} // namespace

void AppendFragment(UTF8String& ioText, PropList const& inList,
                    utils::WriteOptions const& inOptions, TakeBlock const& inTake) {
    NumberDigits const digits = DigitsOf(inOptions);
    std::vector<NodeWalk> openLists;
    auto const open = [&](PropList const& inNested) {
        AppendText(ioText, "<prop.list>\n");
        openLists.emplace_back(PropListAccess::Nodes(inNested));
    };
    if (inTake == nullptr) {
        ReserveFor(ioText, PropListAccess::Nodes(inList));
    }
    open(inList);
    while (true) {
        if (ioText.size() >= kWrittenBlock && inTake != nullptr) {
            inTake(ioText);
        }
        auto const* const node = openLists.back().Next();
        if (node == nullptr) {
            AppendText(ioText, "</prop.list>\n");
            openLists.pop_back();
            if (openLists.empty()) {
                return;
            }
            AppendText(ioText, "</prop.pair>\n");
            continue;
        }
        AppendText(ioText, "<prop.pair>\n<key>");
        xml::utils::EncodeReservedCharacters(node->GetKey(), ioText);
        AppendText(ioText, "</key>\n");
        if (node->GetType() == PropListNode::kType) {
            open(static_cast<PropListNode const*>(node)->mList);
            continue;
        }
        node->AppendXML(ioText, digits);
        AppendText(ioText, "</prop.pair>\n");
    }
}

void AppendDocument(UTF8String& ioText, PropList const& inList,
                    utils::WriteOptions const& inOptions, TakeBlock const& inTake) {
    AppendText(ioText, kDeclaration);
    AppendNumber(ioText, inList.GetVersion(), NumberDigits::kSix);
    AppendText(ioText, "'>\n");
    if (typeid(inList) == typeid(PropList)) {
        AppendFragment(ioText, inList, inOptions, inTake);
    } else {
        inList.OutputAsXMLFragment(ioText); // a client's class may write its list otherwise
    }
    AppendText(ioText, "</prop.map>\n");
}

} // namespace impl

void PropList::OutputAsXMLFragment(UTF8String& ioText) const {
    impl::AppendFragment(ioText, *this, {}, nullptr);
}

void utils::WritePropList(UTF8String& outText, PropList const& inList) {
    WritePropList(outText, inList, {});
}

void utils::WritePropList(UTF8String& outText, PropList const& inList,
                          WriteOptions const& inOptions) {
    outText.clear();
    impl::AppendDocument(outText, inList, inOptions, nullptr);
}

} // namespace brindle::proplist
