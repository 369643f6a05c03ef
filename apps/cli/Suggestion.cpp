#include "cli/Suggestion.h"

#include <algorithm>
#include <numeric>

namespace marlune::cli {
namespace {

// How many letters have to be put in, taken out or replaced.
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string nearest(std::string_view word, const std::vector<std::string>& known) {
    std::string best;
    std::size_t least = std::max<std::size_t>(2, word.size() / 3) + 1;
    for (const std::string& each : known) {
        if (const std::size_t apart = distance(word, each); apart < least) {
            least = apart;
            best = each;
        }
    }
    return best;
}

}  // namespace marlune::cli
