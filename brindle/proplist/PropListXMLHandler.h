#pragma once

#include <brindle/Export.h>
#include <brindle/proplist/PropList.h>
#include <brindle/utility/TextTypes.h>
#include <brindle/xml/AbstractParseHandler.h>

#include <cstdint>
#include <map>
#include <vector>

namespace brindle::proplist {

/// Fills a list from the events of its document. Only a client with a parser of its own needs it;
/// `utils::ReadPropList` does the same with the installed parser. One handler reads one document.
///
/// Any events in any order are safe. Unknown elements are ignored with their text, and lists nest
/// to any depth. The document's properties are added to the list; where a key exists, its value is
/// replaced.
class BRN_API PropListXMLHandler : public xml::AbstractParseHandler {
public:
    /// The list has to outlive the handler, and must not be changed by others until the last event.
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
    void StartValue(PropListPropertyType inType, bool inFlag) noexcept;
    void EndValue();
    void CollectElement();
    void StoreScalar();
    void StoreArray();

    PropList& mRoot;
    UTF16String mKeyText;
    UTF16String mValueText;
    std::vector<PropList*> mOpenLists; ///< the root first; values go to the last
    Target mTarget = Target::kNone;    ///< where text goes
    PropListPropertyType mValueType = kPropertyType_None;
    bool mFlag = false; ///< the value, if it is a `bool`
    bool mIsInArray = false;
    bool mIsInArrayType = false;
    PropListPropertyType mArrayType = kPropertyType_None; ///< of the elements, as <array.type> says
    std::vector<UTF16String> mElements;                   ///< of the array that is being read
};

} // namespace brindle::proplist
