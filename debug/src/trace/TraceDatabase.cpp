#include "debug/src/trace/TraceDatabase.h"

#include <charconv>
#include <string>
#include <string_view>

namespace brindle::debug {

namespace {

UTF8String const& EnabledKey() {
    static UTF8String const& key = *new UTF8String("Enabled"_utf8);
    return key;
}

UTF8String const& VolumeKey() {
    static UTF8String const& key = *new UTF8String("Volume"_utf8);
    return key;
}

/// The decimal number that is the whole text, but for white space around it; otherwise 0.
std::int32_t NumberIn(UTF8String const& inText) noexcept {
    constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";
    std::string_view text(reinterpret_cast<char const*>(inText.data()), inText.size());
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    text = text.substr(0, text.find_last_not_of(kWhiteSpace) + 1);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') {
        text.remove_prefix(1);
    }
    std::int32_t number = 0;
    auto const* const end = text.data() + text.size();
    auto const result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? number : 0;
}

} // namespace

void TraceDatabase::Load() {
    mCategories.Clear();
    auto const text = mFile.Read();
    FieldReader fields(text);
    UTF8String name;
    UTF8String enabled;
    UTF8String volume;
    while (fields.Next('\t', name) && fields.Next('\t', enabled) && fields.Next('\n', volume)) {
        Store(name, {NumberIn(enabled) == 1, NumberIn(volume)});
    }
}

bool TraceDatabase::Read(UTF8String const& inCategory, TraceSetting& ioSetting) const {
    auto const* const entry = mCategories.GetSubList(inCategory);
    if (entry != nullptr) {
        entry->GetValue(EnabledKey(), ioSetting.isEnabled);
        entry->GetValue(VolumeKey(), ioSetting.volume);
    }
    return entry != nullptr;
}

void TraceDatabase::Store(UTF8String const& inCategory, TraceSetting const& inSetting) {
    auto* const entry = mCategories.NewSubList(inCategory);
    entry->SetValue(EnabledKey(), inSetting.isEnabled);
    entry->SetValue(VolumeKey(), inSetting.volume);
}

void TraceDatabase::AppendNames(std::list<UTF8String>& ioNames) const {
    mCategories.GetPropertyNames(ioNames);
}

void TraceDatabase::Save() const {
    std::list<UTF8String> names;
    AppendNames(names);
    UTF8String text;
    for (auto const& name : names) {
        TraceSetting setting;
        Read(name, setting);
        auto const volume = std::to_string(setting.volume);
        ((text += name) += '\t') += setting.isEnabled ? '1' : '0';
        text += '\t';
        text.append(volume.begin(), volume.end());
        text += '\n';
    }
    mFile.Write(text);
}

} // namespace brindle::debug
