#include <brindle/arrange/ExplainLayout.h>

#include <brindle/arrange/AxisArrangement.h>

#include "arrange/src/measure/LayoutForms.h"
#include "arrange/src/tree/Pass.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

namespace brindle::arrange {

namespace {

float Area(geom::PointT<float> const& inSize) {
    return inSize.x * inSize.y;
}

/// As the engine rounds it.
float DistanceFromGoldenRatio(ExplainedAlternative const& inAlternative) {
    double const aspect = double{inAlternative.best.x} / double{inAlternative.best.y};
    return static_cast<float>(std::fabs(aspect - double{1.618034F}));
}

struct Comparison {
    LayoutReason reason;
    bool isBetter; ///< whether the candidate replaces the best one so far
};

/// Compares a candidate with the best alternative in front of it.
Comparison Compare(ExplainedAlternative const& inCandidate, ExplainedAlternative const& inBest) {
    if (inCandidate.fits != inBest.fits) {
        return {LayoutReason::kFits, inCandidate.fits};
    }
    auto const byLess = [](LayoutReason inReason, float inLHS,
                           float inRHS) -> std::optional<Comparison> {
        if (inLHS == inRHS) {
            return {};
        }
        return Comparison{inReason, inLHS < inRHS};
    };
    std::optional<Comparison> decision;
    if (!inCandidate.fits) {
        decision = byLess(LayoutReason::kClippedArea, inCandidate.clippedArea, inBest.clippedArea);
    } else {
        decision = byLess(LayoutReason::kUnusedArea, inCandidate.unusedArea, inBest.unusedArea);
        if (!decision) {
            decision =
                byLess(LayoutReason::kMinimumArea, Area(inCandidate.minimum), Area(inBest.minimum));
        }
        if (!decision) {
            decision = byLess(LayoutReason::kGoldenRatio, DistanceFromGoldenRatio(inCandidate),
                              DistanceFromGoldenRatio(inBest));
        }
    }
    return decision.value_or(Comparison{LayoutReason::kOrder, false});
}

ExplainedAlternative Measured(impl::IArrangement const& inArrangement,
                              geom::PointT<float> const& inSize) {
    ExplainedAlternative measured;
    measured.form = impl::FormOf(inArrangement);
    measured.minimum = {inArrangement.MinWidth(), inArrangement.MinHeight()};
    measured.best = {inArrangement.BestWidth(), inArrangement.BestHeight()};
    measured.fits = inSize.x >= measured.minimum.x && inSize.y >= measured.minimum.y;
    if (measured.fits) {
        measured.unusedArea = inArrangement.UnusedArea(inSize);
    } else {
        measured.clippedArea = inArrangement.ClippedArea(inSize);
    }
    return measured;
}

std::string Number(float inNumber) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, inNumber).ptr};
}

std::string SizeText(geom::PointT<float> const& inSize) {
    return Number(inSize.x) + 'x' + Number(inSize.y);
}

std::string ReasonText(ExplainedAlternative const& inAlternative) {
    bool const isChosen = inAlternative.isChosen;
    switch (inAlternative.reason) {
    case LayoutReason::kOnlyOne:
        return "it is the only one";
    case LayoutReason::kFits:
        return isChosen ? "it is the only one that fits" : "the chosen one fits";
    case LayoutReason::kClippedArea:
        return (isChosen ? "least of it is cut off (" : "more of it is cut off (") +
               Number(inAlternative.clippedArea) + ')';
    case LayoutReason::kUnusedArea:
        return (isChosen ? "it leaves least unused (" : "it leaves more unused (") +
               Number(inAlternative.unusedArea) + ')';
    case LayoutReason::kMinimumArea:
        return (isChosen ? "its minimum area is the smallest (" : "its minimum area is larger (") +
               Number(Area(inAlternative.minimum)) + ')';
    case LayoutReason::kGoldenRatio:
        return isChosen ? "its shape is nearest the golden ratio"
                        : "its shape is farther from the golden ratio";
    case LayoutReason::kOrder:
        return isChosen ? "it is the first of equals" : "it equals the chosen one, which is first";
    }
    return {};
}

} // namespace

std::vector<ExplainedAlternative> ExplainedAlternatives(IArrangeable& ioTree,
                                                        geom::PointT<float> const& inSize) {
    impl::Pass const pass;
    // A copy, because a client that is asked how it expands may have the set rebuilt.
    impl::ArrangementSet const set = ioTree.Arrangements();
    std::vector<ExplainedAlternative> alternatives;
    std::size_t chosen = 0;
    for (std::size_t index = 0; index < set.Size(); ++index) {
        alternatives.push_back(Measured(*set[index], inSize));
        if (index > 0 && Compare(alternatives[index], alternatives[chosen]).isBetter) {
            chosen = index;
        }
    }
    for (std::size_t index = 0; index < alternatives.size(); ++index) {
        if (index != chosen) {
            ExplainedAlternative& other = alternatives[index];
            ExplainedAlternative& best = alternatives[chosen];
            other.reason = (index < chosen ? Compare(best, other) : Compare(other, best)).reason;
            best.reason = std::max(best.reason, other.reason);
        }
    }
    if (!alternatives.empty()) {
        alternatives[chosen].isChosen = true;
    }
    return alternatives;
}

std::string ExplainLayout(IArrangeable& ioTree, geom::PointT<float> const& inSize) {
    std::string text;
    for (ExplainedAlternative const& alternative : ExplainedAlternatives(ioTree, inSize)) {
        text += (alternative.isChosen ? "* " : "  ") + alternative.form + ": minimum " +
                SizeText(alternative.minimum) + ", best " + SizeText(alternative.best) +
                (alternative.fits ? ", fits: " : ", does not fit: ") +
                (alternative.isChosen ? "chosen, " : "") + ReasonText(alternative) + '\n';
    }
    return text;
}

} // namespace brindle::arrange
