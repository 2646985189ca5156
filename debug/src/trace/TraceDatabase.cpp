#include "debug/src/trace/TraceDatabase.h"

#include "debug/src/database/WholeNumber.h"

#include <string>

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

} // namespace

void TraceDatabase::Load() {
    mCategories.Clear();
    auto const text = mFile.Read();
    FieldReader fields(text);
    UTF8String name;
    UTF8String enabled;
    UTF8String volume;
    while (fields.Next('\t', name) && fields.Next('\t', enabled) && fields.Next('\n', volume)) {
        Store(name, {WholeNumber(enabled) == 1, WholeNumber(volume)});
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
