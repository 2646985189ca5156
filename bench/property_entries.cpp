#include "bench/property_entries.h"

#include <cstdint>
#include <list>
#include <string>

namespace {

using namespace brindle;
using boost::property_tree::ptree;

std::string Key(int inIndex) {
    static char const* const sections[] = {"window.", "document.", "colours.", "shortcuts."};
    auto const scattered = static_cast<std::uint32_t>(inIndex) * 2654435761u;
    std::string digits = std::to_string(scattered);
    return sections[scattered % 4] + digits.insert(0, 10 - digits.size(), '0');
}

std::string Text(int inIndex) {
    return "Folder " + std::to_string(inIndex) + " of the user's pictures & films";
}

} // namespace

int Count(benchmark::State& ioState) {
    ioState.SetLabel(ioState.range(0) == 20 ? "20 entries" : "100,000 entries");
    return static_cast<int>(ioState.range(0));
}

void AddEntries(proplist::PropList& ioList, int inCount) {
    for (int i = 0; i < inCount; ++i) {
        std::string const name = Key(i);
        UTF8String const key(name.begin(), name.end());
        std::string const text = Text(i);
        switch (i % 10) {
        case 0:
            ioList.SetValue(key, std::int32_t{i});
            break;
        case 1:
            ioList.SetValue(key, std::uint64_t{1} << i % 60);
            break;
        case 2:
            ioList.SetValue(key, std::int64_t{i} * 1'000'003);
            break;
        case 3:
            ioList.SetValue(key, i / 7.0);
            break;
        case 4:
            ioList.SetValue(key, static_cast<float>(i) * 0.125F);
            break;
        case 5:
            ioList.SetValue(key, i % 4 == 1);
            break;
        case 6:
            ioList.SetValue(key, UTF8String(text.begin(), text.end()));
            break;
        case 7:
            ioList.SetValue(key, UTF16String(text.begin(), text.end()));
            break;
        case 8:
            ioList.SetValue(key, std::list<std::int32_t>{i, i + 1, i + 2});
            break;
        default:
            ioList.NewSubList(key)->SetValue("visible"_utf8, true);
        }
    }
}

Plist MakePlist(int inCount) {
    Plist list(plist_new_dict());
    auto const number = [](std::int64_t inValue) {
        return plist_new_uint(static_cast<std::uint64_t>(inValue));
    };
    for (int i = 0; i < inCount; ++i) {
        plist_t value = nullptr;
        switch (i % 10) {
        case 0:
            value = number(i);
            break;
        case 1:
            value = plist_new_uint(std::uint64_t{1} << i % 60);
            break;
        case 2:
            value = number(std::int64_t{i} * 1'000'003);
            break;
        case 3:
            value = plist_new_real(i / 7.0);
            break;
        case 4:
            value = plist_new_real(i * 0.125);
            break;
        case 5:
            value = plist_new_bool(i % 4 == 1);
            break;
        case 6:
        case 7:
            value = plist_new_string(Text(i).c_str());
            break;
        case 8:
            value = plist_new_array();
            for (int element = i; element < i + 3; ++element) {
                plist_array_append_item(value, number(element));
            }
            break;
        default:
            value = plist_new_dict();
            plist_dict_set_item(value, "visible", plist_new_bool(1));
        }
        plist_dict_set_item(list.get(), Key(i).c_str(), value);
    }
    return list;
}

ptree MakeTree(int inCount) {
    ptree root;
    ptree& list = root.put_child("preferences", ptree());
    for (int i = 0; i < inCount; ++i) {
        ptree& value = list.push_back({Key(i), ptree()})->second;
        switch (i % 10) {
        case 0:
            value.put_value(i);
            break;
        case 1:
            value.put_value(std::uint64_t{1} << i % 60);
            break;
        case 2:
            value.put_value(std::int64_t{i} * 1'000'003);
            break;
        case 3:
            value.put_value(i / 7.0);
            break;
        case 4:
            value.put_value(static_cast<float>(i) * 0.125F);
            break;
        case 5:
            value.put_value(i % 4 == 1);
            break;
        case 6:
        case 7:
            value.put_value(Text(i));
            break;
        case 8:
            for (int element = i; element < i + 3; ++element) {
                value.add("item", element);
            }
            break;
        default:
            value.put("visible", true);
        }
    }
    return root;
}
