#pragma once

#include "host/layout/NodeDescription.h"

#include <brindle/proplist/PropList.h>

#include <cstddef>
#include <stdexcept>

namespace brindle::host::layout {

/// A property list describes no tree. `what()` is the path of the key that is wrong, with what was
/// expected there: "children/2/width/best: a number is expected, not a text".
class description_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// As many levels of nodes are laid out.
constexpr std::size_t kMostLevels = 2000;

/// The tree that a property list describes, every key of which is understood. Numbers are finite
/// and from 0 up, and of any type; texts are of either type.
///
/// | of any node  |                                                                   |
/// |--------------|-------------------------------------------------------------------|
/// | `label`      | text                                                              |
/// | `margins`    | a number for all sides, or a list: `left`, `top`, `right`, `bottom` |
///
/// | of a leaf          |                                                                   |
/// |--------------------|-------------------------------------------------------------------|
/// | `width`, `height`  | the best size, or a list: `best`, `minimum`, `expandable`, `maximum` |
/// | `role`             | one of `kRoleNames`                                               |
///
/// | of a group   |                                                                   |
/// |--------------|-------------------------------------------------------------------|
/// | `kind`       | `Row`, `Column` and so on, as the kinds of groups are called      |
/// | `children`   | a list with one list for each child, in the order of their keys: whole numbers
/// from 1 up | | `spacing`    | a number for both directions, or a list: `horizontal`, `vertical` |
/// | `alignment`  | a list: `horizontal` (`left`, `centre`, `right`), `vertical` (`top`, `centre`,
/// `bottom`) | | `separators` | true or false                                                     |
///
/// Only `width` and `height`, with their `best`, and `children` of at least one have to be there.
/// Throws `description_error`.
NodeDescription ReadDescription(proplist::PropList const& inList);

} // namespace brindle::host::layout
