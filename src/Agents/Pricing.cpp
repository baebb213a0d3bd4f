#include "Agents/Pricing.h"

#include "Support/Text.h"

#include <array>
#include <initializer_list>
#include <string>

namespace kippo::Pricing {

namespace {

/// The families whose cached input costs a tenth of fresh input and whose cache costs a quarter more to fill.
constexpr Price usual(double input, double output) {
    return {.input = input, .output = output, .cacheWrite = input * 1.25, .cacheRead = input * 0.1};
}

struct Row {
    std::string_view part; ///< of the model's name
    Price price;
};

/// The first row whose part a name holds is its price: versions come before their families.
constexpr std::array rows = std::to_array<Row>({
    {"opus-5-5", {.input = 4, .output = 20, .cacheWrite = 5, .cacheRead = 0.2}},
    {"opus-5", usual(5, 25)},
    {"opus-4-8", usual(5, 25)},
    {"opus-4-7", usual(5, 25)},
    {"opus-4-6", usual(5, 25)},
    {"opus-4-5", usual(5, 25)},
    {"opus", usual(15, 75)},
    {"sonnet-5", usual(2, 10)},
    {"sonnet", usual(3, 15)},
    {"haiku-4", usual(1, 5)},
    {"haiku", usual(0.8, 4)},
});

constexpr Price unknown = usual(3, 15);

} // namespace

Price price(std::string_view model) {
    const std::string name = Text::lowered(model);
    if (name.contains("fable") || name.contains("mythos")) {
        Price price = usual(10, 50);
        // Reading the cache is cheaper in 5.1 than the usual tenth.
        if (name.contains("5-1")) {
            price.cacheRead = 0.25;
        }
        return price;
    }
    for (const auto& row : rows) {
        if (name.contains(row.part)) {
            return row.price;
        }
    }
    return unknown;
}

} // namespace kippo::Pricing
