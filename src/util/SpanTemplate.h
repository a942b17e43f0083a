#pragma once

// File names of the pages of a published list that spans several pages. In a template such as
// "list#.html /index.html", the part behind the "/" names page 1, in the folder of the part
// ahead; pages 2 and on are the part ahead with each "#" as the three-digit page number.

#include <string>
#include <string_view>

namespace jk {

// False when the template lacks "/" or "#" or holds one of the characters " ? * < > |.
bool ValidSpanTemplate(std::string_view templ, std::string_view folder, std::string& firstPage);
std::string SpanPagePath(std::string_view templ, std::string_view folder, int page);

}  // namespace jk
