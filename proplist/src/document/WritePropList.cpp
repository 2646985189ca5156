#include <brindle/proplist/PropListUtils.h>

#include "proplist/src/model/PropNodes.h"

#include <brindle/xml/ReservedCharacters.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace brindle::proplist {

void PropList::OutputAsXMLFragment(UTF8String& ioText) const {
    using impl::AppendText;
    std::vector<impl::NodeWalk> openLists;
    auto const open = [&](PropList const& inList) {
        AppendText(ioText, "<prop.list>\n");
        openLists.emplace_back(inList.mNodes);
    };
    open(*this);
    std::size_t const likelySize = ioText.size() + 96 * impl::CountNodes(mNodes);
    if (ioText.capacity() < likelySize) {
        // Prevents copying a long text again and again as it grows.
        ioText.reserve(std::max(likelySize, 2 * ioText.capacity()));
    }
    while (true) {
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
        if (node->GetType() == impl::PropListNode::kType) {
            open(static_cast<impl::PropListNode const*>(node)->mList);
            continue;
        }
        node->AppendXML(ioText);
        AppendText(ioText, "</prop.pair>\n");
    }
}

void utils::WritePropList(UTF8String& outText, PropList const& inList) {
    outText.clear();
    impl::AppendText(outText, "<?xml version='1.0'?>\n<prop.map version='");
    impl::AppendNumber(outText, inList.GetVersion());
    impl::AppendText(outText, "'>\n");
    inList.OutputAsXMLFragment(outText);
    impl::AppendText(outText, "</prop.map>\n");
}

} // namespace brindle::proplist
