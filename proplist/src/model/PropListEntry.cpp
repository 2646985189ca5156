#include <brindle/proplist/PropListEntry.h>

#include "proplist/src/model/PropNodes.h"

namespace brindle::proplist {

PropListIterator::PropListIterator(PropList const& inList, impl::PropNodeBlocks const& inNodes,
                                   std::size_t inBlock) noexcept
    : mNodes(&inNodes), mBlock(inBlock) {
    mEntry.mList = &inList;
    Load();
}

PropListIterator& PropListIterator::operator++() noexcept {
    if (++mSlot == (*mNodes)[mBlock].size()) {
        ++mBlock;
        mSlot = 0;
    }
    Load();
    return *this;
}

void PropListIterator::Load() noexcept {
    if (mBlock != mNodes->size()) {
        impl::PropNodeBase const& node = *(*mNodes)[mBlock][mSlot].node;
        mEntry.mKey = &node.GetKey();
        mEntry.mType = node.GetType();
    }
}

PropListIterator PropList::begin() const noexcept {
    return {*this, mNodes, 0};
}

PropListIterator PropList::end() const noexcept {
    return {*this, mNodes, mNodes.size()};
}

} // namespace brindle::proplist
