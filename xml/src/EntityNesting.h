#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brindle::xml::impl {

/// How deep the general entities of a document nest, from their declarations: an entity whose text
/// names no other is one level deep, and each reference within a text adds a level.
///
/// Expat may expand a nested reference by recursion, so what is too deep has to be refused before
/// any reference is expanded.
class EntityNesting {
public:
    static constexpr int kMostLevels = 64;

    /// Adds an entity that has not been declared before, with its replacement text in UTF-8.
    /// Returns false if entities now nest deeper than `kMostLevels`, as they do where one contains
    /// itself.
    [[nodiscard]] bool Declare(char const* inName, std::string_view inText);

private:
    struct Entity {
        int levels = 0;               ///< 0 for an entity that has been named but not declared
        std::vector<Entity*> namedBy; ///< the entities whose texts refer to this one
    };

    Entity& Find(std::string_view inName);
    [[nodiscard]] static bool RaiseReferrers(Entity& ioEntity);

    std::map<std::string, Entity, std::less<>> mEntities;
};

} // namespace brindle::xml::impl
