#include "KZDXCircles.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

class Search {
public:
    Search(std::vector<KZDXEdge> edges, std::size_t count)
        : _edges(std::move(edges)), _starts(count + 1, 0), _states(count, State::New), _depths(count, 0) {
        std::stable_sort(_edges.begin(), _edges.end(),
                         [](const KZDXEdge& one, const KZDXEdge& other) { return one.from < other.from; });
        for (const auto& edge : _edges) {
            ++_starts[edge.from + 1];
        }
        std::partial_sum(_starts.begin(), _starts.end(), _starts.begin());
    }

    void search(const std::function<void(const KZDXCircle&)>& tell) {
        for (std::size_t place = 0; place < _states.size(); ++place) {
            if (_states[place] == State::New) {
                enter({place, _starts[place], 0, 0, nullptr});
                walk(tell);
            }
        }
    }

private:
    enum class State : unsigned char { New, OnTheWay, Done };
    // A place on the way, with what was gone along to come there.
    struct Step {
        std::size_t place;
        std::size_t next;            // edge
        std::size_t linksBefore;     // edges that an element says
        std::size_t outlinesBefore;  // edges of the outline
        const KZDXReference* lastLink;
    };

    void enter(const Step& step) {
        _states[step.place] = State::OnTheWay;
        _depths[step.place] = _way.size();
        _way.push_back(step);
    }

    // Where an edge leads from the last step.
    [[nodiscard]] Step stepAlong(const KZDXEdge& edge) const {
        const auto& last = _way.back();
        return {edge.to, _starts[edge.to], last.linksBefore + (edge.link != nullptr ? 1 : 0),
                last.outlinesBefore + (edge.isOfOutline ? 1 : 0), edge.link != nullptr ? edge.link : last.lastLink};
    }

    // The circle that the last step to a place on the way closes.
    [[nodiscard]] KZDXCircle circleClosedBy(const Step& step) const {
        constexpr std::size_t most = 6;
        const auto first = _depths[step.place];
        KZDXCircle circle;
        circle.length = _way.size() - first;
        circle.link = step.linksBefore > _way[first].linksBefore ? step.lastLink : nullptr;
        circle.usesOutline = step.outlinesBefore > _way[first].outlinesBefore;
        for (auto place = first; place < std::min(_way.size(), first + most); ++place) {
            circle.places.push_back(_way[place].place);
        }
        return circle;
    }

    void walk(const std::function<void(const KZDXCircle&)>& tell) {
        while (!_way.empty()) {
            auto& last = _way.back();
            if (last.next == _starts[last.place + 1]) {
                _states[last.place] = State::Done;
                _way.pop_back();
                continue;
            }
            const auto& edge = _edges[last.next++];
            const auto step = stepAlong(edge);
            if (_states[edge.to] == State::OnTheWay) {
                tell(circleClosedBy(step));
            } else if (_states[edge.to] == State::New) {
                enter(step);
            }
        }
    }

    std::vector<KZDXEdge> _edges;
    std::vector<std::size_t> _starts;  // of the edges from each place
    std::vector<State> _states;
    std::vector<std::size_t> _depths;  // of each place on the way
    std::vector<Step> _way;
};

}  // namespace

void KZDXForEachCircle(std::vector<KZDXEdge> edges, std::size_t count,
                       const std::function<void(const KZDXCircle&)>& tell) {
    Search(std::move(edges), count).search(tell);
}
