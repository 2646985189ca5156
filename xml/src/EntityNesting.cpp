#include "xml/src/EntityNesting.h"

#include <algorithm>

namespace brindle::xml::impl {

bool EntityNesting::Declare(char const* inName, std::string_view inText) {
    Entity& entity = mEntities[inName];
    entity.levels = 1;
    auto end = inText.find('&');
    while (end != std::string_view::npos) {
        auto const start = end + 1;
        end = inText.find_first_of("&;", start);
        if (end == std::string_view::npos) {
            break;
        }
        bool const isReference = inText[end] == ';' && inText[start] != '#';
        if (isReference) {
            Entity& named = Find(inText.substr(start, end - start));
            named.namedBy.push_back(&entity);
            entity.levels = std::max(entity.levels, named.levels + 1);
        }
        end = inText.find('&', end);
    }
    return RaiseReferrers(entity);
}

EntityNesting::Entity& EntityNesting::Find(std::string_view inName) {
    auto const found = mEntities.find(inName);
    return found != mEntities.end() ? found->second : mEntities[std::string(inName)];
}

/// Entities may be named before they are declared, so those that name this one may now be deeper.
/// None is raised more than `kMostLevels` times, which bounds the work.
bool EntityNesting::RaiseReferrers(Entity& ioEntity) {
    std::vector<Entity*> raised{&ioEntity};
    while (!raised.empty()) {
        Entity const& entity = *raised.back();
        raised.pop_back();
        if (entity.levels > kMostLevels) {
            return false;
        }
        for (Entity* const referrer : entity.namedBy) {
            if (referrer->levels <= entity.levels) {
                referrer->levels = entity.levels + 1;
                raised.push_back(referrer);
            }
        }
    }
    return true;
}

} // namespace brindle::xml::impl
