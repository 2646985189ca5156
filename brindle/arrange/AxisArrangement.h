#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/GroupArrangement.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <cstddef>
#include <vector>

namespace brindle::arrange::impl {

/// The axis along which children follow each other. Exported, because the visibility of a
/// template's instances is limited by that of their arguments.
enum class BRN_API MainAxis { kHorizontal, kVertical };

/// Lays its children out from left to right or from top to bottom. Both use one algorithm: the main
/// axis is the one along which the children follow each other, the cross axis is the other one.
template <MainAxis kMainAxis>
class BRN_API AxisArrangement final : public GroupArrangement {
public:
    /// An outer arrangement stands for the whole group: it includes the margins, and tells the
    /// group its position and size. `inSeparators` has an entry for each gap, null for an empty
    /// one.
    AxisArrangement(AbstractArrangeableGroup& inOwner,
                    std::vector<boost::intrusive_ptr<IArrangement>> const& inChildren,
                    std::vector<ISeparator*> const& inSeparators, bool inIsOuter);

    geom::PointT<float> Arrange(geom::RectT<float> const& inRect) override;
    float ExpandedWidth(float inAvailable) const override;
    float ExpandedHeight(float inAvailable) const override;
    float ClippedArea(geom::PointT<float> const& inSize) const override;
    float UnusedArea(geom::PointT<float> const& inSize) const override;
    void ComputeBestWidth() override;
    void ComputeBestHeight() override;

private:
    struct Axes;

    template <typename Measured>
    float Best() const;
    float Gaps() const;
    float MainMargins() const;
    float CrossMargins() const;
    float ExpandedMain(float inAvailable) const;
    float ExpandedCross(float inAvailable) const;
    void PlaceSeparator(std::size_t inIndex, float inEnd, float inCrossPosition, float inCross);
    void Distribute(geom::PointT<float> const& inAvailable) const;
    void DistributeAnew(geom::PointT<float> const& inAvailable) const;
    [[nodiscard]] float ShareOut(float inSlack, float inExpandTotal) const;
};

extern template class AxisArrangement<MainAxis::kHorizontal>;
extern template class AxisArrangement<MainAxis::kVertical>;

using RowArrangement = AxisArrangement<MainAxis::kHorizontal>;
using ColumnArrangement = AxisArrangement<MainAxis::kVertical>;

} // namespace brindle::arrange::impl
