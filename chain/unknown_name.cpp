#include "chain/unknown_name.h"

#include <algorithm>

#include "chain/error.h"
#include "chain/text.h"

namespace pxk::chain {
namespace {

constexpr const char* suggestion = "did you mean ";

bool hasSuggestion(const std::string& message) { return message.find(suggestion) != std::string::npos; }

/// The host's message when `ask` fails.
template <class Ask>
std::string messageOf(Ask ask) {
    try {
        ask();
    } catch (const WorkError& error) {
        return error.what();
    }
    return "";
}

/// Every method and class whose name contains these letters, once each.
std::vector<std::string> namesWith(const std::string& letters, const Catalogue& catalogue) {
    std::vector<std::string> names;
    const auto add = [&](const std::string& name) {
        const bool alike = lowerCase(name).find(lowerCase(letters)) != std::string::npos;
        if (alike && std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    };
    for (const std::string& each : catalogue.classes()) add(each);
    for (const Member& each : catalogue.members()) {
        if (each.kind == PXK_PICTURE_METHOD || each.kind == PXK_GLOBAL_METHOD) add(each.name);
    }
    return names;
}

std::string joinedByOr(const std::vector<std::string>& names) {
    std::string joined;
    for (const std::string& each : names) {
        if (!joined.empty()) joined += &each == &names.back() ? " or " : ", ";
        joined += each;
    }
    return joined;
}

}  // namespace

std::string whyUnknown(OpenHost& host, const Catalogue& catalogue, const std::string& name) {
    // The host looks for the nearest name only where it was asked: on a picture, on nothing, or among the classes.
    const Object picture = host.newPicture(1, 1);
    std::vector<Value> none;
    std::string onPicture = messageOf([&] { host.call(picture, name, none); });
    if (hasSuggestion(onPicture)) return onPicture;
    std::string onNothing = messageOf([&] { host.call(Object(), name, none); });
    if (hasSuggestion(onNothing)) return onNothing;
    std::string amongClasses = messageOf([&] { host.newInstance(name); });
    if (hasSuggestion(amongClasses)) return amongClasses;
    const std::vector<std::string> alike = namesWith(name, catalogue);
    return onPicture + (alike.empty() ? "" : "; " + (suggestion + joinedByOr(alike)) + "?");
}

}  // namespace pxk::chain
