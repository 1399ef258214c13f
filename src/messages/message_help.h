// SPDX-License-Identifier: MIT
// Where the manual explains a message. Plain functions, for any thread.
#pragma once

#include <string>
#include <string_view>

namespace quillmere {

// page: messages.html, whose rows begin with the messages' words, each in a code element with var
// elements where names stand. The anchor of the row that has most of the message's words; empty
// when none is about it.
std::string AnchorOfMessage(std::string_view page, std::string_view message);

}  // namespace quillmere
