#pragma once

// A message for the user, which each front end shows in its own way (a message box, a line on
// standard error), and the answers to the one question with three buttons.

#include <cstdint>
#include <string>

namespace jk {

enum class MessageIcon : std::uint8_t { None, Information, Question, Warning, Critical };

struct UserMessage {
    std::string text;
    std::string title;
    MessageIcon icon = MessageIcon::None;

    friend bool operator==(const UserMessage&, const UserMessage&) = default;
};

// The answer to a question with the buttons Yes, No and Cancel.
enum class SaveAnswer : std::uint8_t { Yes, No, Cancel };

}  // namespace jk
