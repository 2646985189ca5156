#pragma once

#include <brindle/Export.h>
#include <brindle/proplist/PropList.h>
#include <brindle/utility/TextTypes.h>
#include <brindle/xml/AbstractParseHandler.h>

#include <cstdint>
#include <map>
#include <vector>

namespace brindle::proplist {

namespace impl {
enum class ValueKind : std::uint8_t;
}

/// Fills a list from the events of its document: `utils::ReadPropList` for those who have a parser
/// of their own. One handler reads one document.
///
/// Any events in any order are safe. Elements that a document of a list does not have are passed
/// over with their text, and lists nest to any depth. What the document holds is added to the list,
/// in place of what stood under the same keys.
class BRN_API PropListXMLHandler : public xml::AbstractParseHandler {
public:
    /// The list outlives the handler, and nobody else changes it before the last event.
    explicit PropListXMLHandler(PropList& ioList) noexcept;
    PropListXMLHandler(PropListXMLHandler const&) = delete;
    PropListXMLHandler& operator=(PropListXMLHandler const&) = delete;
    ~PropListXMLHandler() override;

    /// Reports a version higher than the current one (`config::kError_PropListVersion`), and goes
    /// on if that returns.
    void StartElement(UTF16String const& inName,
                      std::map<UTF16String, UTF16String> const& inAttributes) override;
    void EndElement(UTF16String const& inName) override;
    void Characters(UTF16String const& inText) override;

private:
    enum class Target : std::uint8_t { kNone, kKey, kValue };

    void ReadVersion(std::map<UTF16String, UTF16String> const& inAttributes);
    void StartList();
    void EndList() noexcept;
    void StartValue(impl::ValueKind inKind) noexcept;
    void EndValue();
    void CollectElement();
    void StoreScalar();
    void StoreArray();

    PropList& mRoot;
    UTF16String mKeyText;
    UTF16String mValueText;
    std::vector<PropList*> mOpenLists; ///< the root first; values go to the last
    Target mTarget = Target::kNone;    ///< where text goes
    impl::ValueKind mValueKind{};
    bool mIsInArray = false;
    bool mIsInArrayType = false;
    impl::ValueKind mArrayTypeKind{};
    std::vector<UTF16String> mElements; ///< of the array that is being read
};

} // namespace brindle::proplist
