#pragma once

#include "platform/platform.h"

#include <span>
#include <string_view>

/// The texts that explain the program and its kinds of files, one message box each.
namespace quill::shell {

std::span<const std::string_view> introduction_texts();

/// Returns explanations of ZIP, HTX, PICS and encoded files, for the choice of what to create.
std::span<const std::string_view> kinds_of_files_texts();

/// Returns explanations of HTX and PICS files, for the choice between them.
std::span<const std::string_view> book_and_pics_texts();

/// Shows the texts one after the other.
void say_all(platform::Platform& platform, std::span<const std::string_view> texts);

}  // namespace quill::shell
