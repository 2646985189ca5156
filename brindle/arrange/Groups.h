#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/AbstractArrangeableGroup.h>
#include <brindle/arrange/AxisArrangement.h>

#include <type_traits>
#include <vector>

/// The kinds of groups. The constructor of each takes the parent; a group that shows the node as a
/// child replaces it. `DynamicGroup` describes what a class derived from one of them may override:
/// the spacing, the alignment, the margins, the separators, and what it hears of its place.
///
///     class Toolbar : public arrange::HorizontalWrapping { /* VisitChildren, twice */ };
///     toolbar.Arrange({0, 0, 320, 48});

namespace brindle::arrange {

namespace impl {

/// Offers one layout: all children in a single row or column.
template <typename Arrangement>
class BRN_API BasicArrangeableGroup : public virtual AbstractArrangeableGroup {
public:
    explicit BasicArrangeableGroup(IArrangeable* inParent = nullptr);

    void BuildArrangements(ArrangementSet& inSet,
                           std::vector<boost::intrusive_ptr<IArrangement>> const& inChosen,
                           std::vector<ISeparator*> const& inSeparators) override;
    std::vector<LayoutForm> Forms() const override;
};

/// Offers every way of breaking its children into lines, each as a stack of those lines.
template <typename Line, typename Stack>
class BRN_API WrappingArrangeableGroup : public virtual AbstractArrangeableGroup {
public:
    explicit WrappingArrangeableGroup(IArrangeable* inParent = nullptr);

    void BuildArrangements(ArrangementSet& inSet,
                           std::vector<boost::intrusive_ptr<IArrangement>> const& inChosen,
                           std::vector<ISeparator*> const& inSeparators) override;
    std::vector<LayoutForm> Forms() const override;
};

extern template class BasicArrangeableGroup<RowArrangement>;
extern template class BasicArrangeableGroup<ColumnArrangement>;
extern template class WrappingArrangeableGroup<RowArrangement, ColumnArrangement>;
extern template class WrappingArrangeableGroup<ColumnArrangement, RowArrangement>;

/// Offers the layouts of two other kinds, those of the first before those of the second.
template <typename First, typename Second>
class BinaryArrangeableGroup : public First, public Second {
public:
    explicit BinaryArrangeableGroup(IArrangeable* inParent = nullptr)
        : First(inParent), Second(inParent) {}

    void BuildArrangements(ArrangementSet& inSet,
                           std::vector<boost::intrusive_ptr<IArrangement>> const& inChosen,
                           std::vector<ISeparator*> const& inSeparators) override {
        First::BuildArrangements(inSet, inChosen, inSeparators);
        Second::BuildArrangements(inSet, inChosen, inSeparators);
    }

    std::vector<LayoutForm> Forms() const override {
        std::vector<LayoutForm> forms = First::Forms();
        std::vector<LayoutForm> const second = Second::Forms();
        forms.insert(forms.end(), second.begin(), second.end());
        return forms;
    }
};

} // namespace impl

/// Its children stand side by side.
///
/// Groups.h says what a derived class overrides.
class Row : public impl::BasicArrangeableGroup<impl::RowArrangement> {
public:
    using BasicArrangeableGroup::BasicArrangeableGroup;
};

/// Its children stand one below the other.
///
/// Groups.h says what a derived class overrides.
class Column : public impl::BasicArrangeableGroup<impl::ColumnArrangement> {
public:
    using BasicArrangeableGroup::BasicArrangeableGroup;
};

/// A row or a column, whichever suits the rectangle.
///
/// Groups.h says what a derived class overrides.
class Flipping : public impl::BinaryArrangeableGroup<Row, Column> {
public:
    using BinaryArrangeableGroup::BinaryArrangeableGroup;
};

/// Its children stand in rows, broken where it suits the rectangle.
///
/// Groups.h says what a derived class overrides.
class HorizontalWrapping
    : public impl::WrappingArrangeableGroup<impl::RowArrangement, impl::ColumnArrangement> {
public:
    using WrappingArrangeableGroup::WrappingArrangeableGroup;
};

/// Its children stand in columns, broken where it suits the rectangle.
///
/// Groups.h says what a derived class overrides.
class VerticalWrapping
    : public impl::WrappingArrangeableGroup<impl::ColumnArrangement, impl::RowArrangement> {
public:
    using WrappingArrangeableGroup::WrappingArrangeableGroup;
};

/// Rows or columns, broken where it suits the rectangle.
///
/// Groups.h says what a derived class overrides.
class AutoLayout : public impl::BinaryArrangeableGroup<HorizontalWrapping, VerticalWrapping> {
public:
    using BinaryArrangeableGroup::BinaryArrangeableGroup;
};

} // namespace brindle::arrange
