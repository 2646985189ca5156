#pragma once

#include <brindle/arrange/Groups.h>

#include <utility>

namespace brindle::arrange {

/// A group that forwards every question about its look and its children to its host, which owns it.
template <typename Group, typename Host>
class HostedGroup final : public Group {
public:
    /// Starts without a parent; a group that shows it as a child sets its parent when it is
    /// measured.
    HostedGroup(Host* inHost, IArrangeable*) : mHost(inHost) {}

    bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const override {
        return std::as_const(*mHost).VisitChildren(std::move(inFunction));
    }
    bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) override {
        return mHost->VisitChildren(std::move(inFunction));
    }
    float HorizontalSpacing() const override { return mHost->HorizontalSpacing(); }
    float VerticalSpacing() const override { return mHost->VerticalSpacing(); }
    AlignmentHorizontal HorizontalAlignment() const override {
        return mHost->HorizontalAlignment();
    }
    AlignmentVertical VerticalAlignment() const override { return mHost->VerticalAlignment(); }
    ISeparator* BuildSeparator() override { return mHost->BuildSeparator(); }
    void ClearSeparators() override { mHost->ClearSeparators(); }
    float LeftMargin() const override { return mHost->LeftMargin(); }
    float RightMargin() const override { return mHost->RightMargin(); }
    float TopMargin() const override { return mHost->TopMargin(); }
    float BottomMargin() const override { return mHost->BottomMargin(); }
    void Position(geom::PointT<float> const& inPosition) override { mHost->Position(inPosition); }
    void SetDimensions(geom::PointT<float> const& inSize) override { mHost->SetDimensions(inSize); }

private:
    Host* mHost;
};

} // namespace brindle::arrange
