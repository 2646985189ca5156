#include "proplist/src/PropNodes.h"

#include <brindle/proplist/PropListUtils.h>

#include <vector>

namespace brindle::proplist {

void PropList::OutputAsXMLFragment(UTF8String& ioText) const {
    using impl::AppendText;
    struct OpenList {
        impl::PropNodes::const_iterator next;
        impl::PropNodes::const_iterator end;
    };
    std::vector<OpenList> openLists;
    auto const open = [&](PropList const& inList) {
        AppendText(ioText, "<prop.list>\n");
        openLists.push_back({inList.mNodes.begin(), inList.mNodes.end()});
    };
    open(*this);
    while (true) {
        OpenList& list = openLists.back();
        if (list.next == list.end) {
            AppendText(ioText, "</prop.list>\n");
            openLists.pop_back();
            if (openLists.empty()) {
                return;
            }
            AppendText(ioText, "</prop.pair>\n");
            continue;
        }
        auto const& [key, node] = *list.next;
        ++list.next;
        AppendText(ioText, "<prop.pair>\n<key>");
        impl::AppendEncoded(ioText, key);
        AppendText(ioText, "</key>\n");
        if (node->GetType() == impl::PropListNode::kType) {
            open(static_cast<impl::PropListNode const&>(*node).mList);
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
