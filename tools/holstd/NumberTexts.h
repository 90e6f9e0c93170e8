#pragma once

#include <string>
#include <string_view>

// What the file has where a number should be. The application reads the number at the start of a
// text and passes over the rest, which whoever wrote the text did not mean.

/// True for the text of a value of the type "int", "float" or "color" that is no number of it.
bool IsNoNumber(std::string_view type, std::string_view text);

/// Says that the value `subject` has such a text, of which the application reads `told`.
std::string NoNumberWarning(const std::string& subject, std::string_view type,
                            std::string_view text, const std::string& told);

/// What such a text would be: "an integer, such as 12".
const char* NumberForm(std::string_view type);
