#include "proplist/src/document/DocumentCheck.h"

#include "proplist/src/model/PropListAccess.h"
#include "proplist/src/model/PropNodes.h"
#include <brindle/utility/UTF8Sequence.h>

#include <algorithm>
#include <vector>

namespace brindle::proplist::impl {

namespace {

constexpr bool IsAllowedControl(std::uint8_t inByte) {
    return inByte == '\t' || inByte == '\n';
}

constexpr std::ptrdiff_t kBlockSize = 64;

/// True if the block consists of allowed ASCII characters. There are no branches, so that the
/// compiler makes a few vector instructions of it.
bool IsPlainBlock(std::uint8_t const* inBlock) noexcept {
    unsigned refused = 0;
    for (std::ptrdiff_t i = 0; i < kBlockSize; ++i) {
        unsigned const byte = inBlock[i];
        unsigned const control = static_cast<unsigned>(byte < 0x20) &
                                 static_cast<unsigned>(byte != '\t') &
                                 static_cast<unsigned>(byte != '\n');
        refused |= control | (byte & 0x80U);
    }
    return refused == 0;
}

/// The length in bytes of the character that begins here; 0 if it is malformed or not allowed.
std::ptrdiff_t CharacterLength(std::uint8_t const* inBytes, std::ptrdiff_t inCount) noexcept {
    auto const [character, length] =
        utility::DecodeUTF8Sequence(inBytes, static_cast<std::size_t>(inCount));
    bool const isControl = character < 0x20 && !IsAllowedControl(inBytes[0]);
    bool const isSurrogate = 0xD800 <= character && character <= 0xDFFF;
    bool const isNoncharacter = character == 0xFFFE || character == 0xFFFF;
    return isControl || isSurrogate || isNoncharacter ? 0 : length;
}

bool HasNul(UTF16String const& inText) {
    return inText.find(std::uint16_t{0}) != UTF16String::npos;
}

} // namespace

bool HasOnlyXMLCharacters(UTF8String const& inDocument) noexcept {
    auto const* at = inDocument.data();
    auto const* const end = at + inDocument.size();
    while (at != end) {
        bool const isBlock = end - at >= kBlockSize;
        if (isBlock && IsPlainBlock(at)) {
            at += kBlockSize;
            continue;
        }
        auto const* const blockEnd = isBlock ? at + kBlockSize : end;
        while (at < blockEnd) {
            auto const length = CharacterLength(at, end - at);
            if (length == 0) {
                return false;
            }
            at += length;
        }
    }
    return true;
}

bool HasTextWithNul(PropList const& inList) {
    using TextsNode = PropListArrayNode<UTF16String>;
    std::vector<PropList const*> lists{&inList};
    while (!lists.empty()) {
        NodeWalk walk(PropListAccess::Nodes(*lists.back()));
        lists.pop_back();
        while (auto const* const node = walk.Next()) {
            switch (node->GetType()) {
            case PropListNode::kType:
                lists.push_back(&static_cast<PropListNode const*>(node)->mList);
                break;
            case UnicodeStringPropNode::kType:
                if (HasNul(static_cast<UnicodeStringPropNode const*>(node)->Value())) {
                    return true;
                }
                break;
            case TextsNode::kType: {
                auto const& texts = static_cast<TextsNode const*>(node)->Values();
                if (std::any_of(texts.begin(), texts.end(), HasNul)) {
                    return true;
                }
                break;
            }
            default:
                break;
            }
        }
    }
    return false;
}

} // namespace brindle::proplist::impl
