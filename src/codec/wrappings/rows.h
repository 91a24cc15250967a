#pragma once

#include "codec/wrappings/plain_text.h"
#include "codec/wrappings/sample.h"

#include <string_view>

/// The functions of the table of wrappings, one file each.
namespace quill::codec {

bool detect_utf16(const Sample& sample);
void unwrap_utf16(std::string_view wrapped, PlainText& out);

bool detect_utf8_marks(const Sample& sample);
void unwrap_utf8_marks(std::string_view wrapped, PlainText& out);

bool detect_html(const Sample& sample);
void unwrap_html(std::string_view wrapped, PlainText& out);

bool detect_html_escapes(const Sample& sample);
void unwrap_html_escapes(std::string_view wrapped, PlainText& out);

bool detect_emlx(const Sample& sample);
void unwrap_emlx(std::string_view wrapped, PlainText& out);

bool detect_quoted_printable(const Sample& sample);
void unwrap_quoted_printable(std::string_view wrapped, PlainText& out);

bool detect_quotes(const Sample& sample);
void unwrap_quotes(std::string_view wrapped, PlainText& out);

bool detect_indents(const Sample& sample);
void unwrap_indents(std::string_view wrapped, PlainText& out);

bool detect_numbers(const Sample& sample);
void unwrap_numbers(std::string_view wrapped, PlainText& out);

}  // namespace quill::codec
