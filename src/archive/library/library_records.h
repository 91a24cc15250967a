#pragma once

#include "archive/changing/tree_walk.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

/// The records that the ZIP operations exchange with the ZIP library. The numeric ones have their prescribed layout;
/// the text ones have the same fields as strings and a list.
namespace quill::zip {

constexpr std::int32_t flag_on = -1;
constexpr std::int32_t flag_off = 0;

/// Function codes of `dzipVB`.
constexpr std::int32_t zip_delete = 2;
constexpr std::int32_t zip_add = 4;
constexpr std::int32_t zip_none = 6;

/// Function codes of `dunzipVB`.
constexpr std::int32_t unzip_count = 1;
constexpr std::int32_t unzip_next = 2;
constexpr std::int32_t unzip_member = 7;
constexpr std::int32_t unzip_extract = 8;
constexpr std::int32_t unzip_none = 9;

/// The command record of `dzipVB`.
struct ZipCommand {
    std::int32_t recordSize = 188;
    std::int32_t function = zip_none;
    std::array<std::int32_t, 8> reserved1{};
    std::int32_t compressionLevel = 5;
    std::int32_t reserved2 = 0;
    std::int32_t useTempDir = 0;
    std::array<std::int32_t, 4> reserved3{};
    std::int32_t option1 = 0;
    std::int32_t reserved4 = 0;
    std::int32_t noDirectoryNames = flag_off;  // members are stored without their directories
    std::int32_t option2 = 0;
    std::array<std::int32_t, 14> reserved5{};
    std::int32_t usePassword = flag_off;  // `password` of ZipStrings applies
    std::array<std::int32_t, 3> reserved6{};
    std::int16_t reserved7 = 0;
    std::int16_t zipFlags = 12;
    std::array<std::int32_t, 7> reserved8{};
};
static_assert(sizeof(ZipCommand) == 188);
static_assert(offsetof(ZipCommand, function) == 4);
static_assert(offsetof(ZipCommand, compressionLevel) == 40);
static_assert(offsetof(ZipCommand, useTempDir) == 48);
static_assert(offsetof(ZipCommand, option1) == 68);
static_assert(offsetof(ZipCommand, noDirectoryNames) == 76);
static_assert(offsetof(ZipCommand, option2) == 80);
static_assert(offsetof(ZipCommand, usePassword) == 140);
static_assert(offsetof(ZipCommand, reserved7) == 156);
static_assert(offsetof(ZipCommand, zipFlags) == 158);
static_assert(offsetof(ZipCommand, reserved8) == 160);

/// The command record of `dunzipVB`. `recordSize` is two bytes less than its real size.
struct UnzipCommand {
    std::int32_t recordSize = 142;
    std::int32_t function = unzip_none;
    std::array<std::int32_t, 3> reserved1{};
    std::int32_t itemIndex = -1;  // a member's number from 0; -1: `itemList` decides
    std::array<std::int32_t, 3> reserved2{};
    std::int32_t option1 = 0;
    std::array<std::int32_t, 2> reserved3{};
    std::int32_t option2 = -1;
    std::int32_t reserved4 = -1;
    std::int32_t reserved5 = 0;
    std::array<std::int32_t, 4> reserved6{};
    std::int32_t itemCount = 0;  // set by function 1
    std::array<std::int32_t, 2> reserved7{};
    std::int32_t option3 = 0;
    std::int32_t usePassword = flag_off;
    std::array<std::int32_t, 3> reserved8{};
    std::int16_t unzipFlags = 14;
    std::int16_t gap = 0;
    std::array<std::int32_t, 8> reserved9{};
};
static_assert(sizeof(UnzipCommand) == 144);
static_assert(offsetof(UnzipCommand, itemIndex) == 20);
static_assert(offsetof(UnzipCommand, option1) == 36);
static_assert(offsetof(UnzipCommand, option2) == 48);
static_assert(offsetof(UnzipCommand, reserved4) == 52);
static_assert(offsetof(UnzipCommand, itemCount) == 76);
static_assert(offsetof(UnzipCommand, option3) == 88);
static_assert(offsetof(UnzipCommand, usePassword) == 92);
static_assert(offsetof(UnzipCommand, unzipFlags) == 108);
static_assert(offsetof(UnzipCommand, reserved9) == 112);

/// The last argument of both entry points; unused.
struct ZipStatusBlock {
    std::array<std::int32_t, 4> words{};
};
static_assert(sizeof(ZipStatusBlock) == 16);

/// An item of a call.
struct ZipItem {
    std::string name;  ///< adding: a path; else a member's name
    /// Selects the member of that number among several of the same name; adding: it is replaced and keeps its name.
    std::optional<std::size_t> number = {};
    /// Adding: the kind of the entry at the path. A file is read through links.
    EntryKind kind = EntryKind::file;
    std::string member = {};   ///< adding: the member's name; empty: derived from the path as the command requests
    std::time_t modified = 0;  ///< adding: of a directory
    /// Adding with a number: it is encrypted only where the member that it replaces is.
    bool keeps_protection = false;
};

/// The text record of `dzipVB`.
struct ZipStrings {
    std::string zipFile;
    std::vector<ZipItem> itemList;
    std::string tempDir;
    std::string password;
    std::string statusTitle = "DynaZIP ZIP Status";
};

/// The text record of `dunzipVB`.
struct UnzipStrings {
    std::string zipFile;
    std::vector<ZipItem> itemList;
    std::string destinationDir;
    std::string password;
    std::string statusTitle = "UnZIP Status";
};

/// Bits of ZipItemInfo::attributes.
constexpr std::int32_t attribute_read_only = 1;
constexpr std::int32_t attribute_hidden = 2;
constexpr std::int32_t attribute_system = 4;
constexpr std::int32_t attribute_volume = 8;
constexpr std::int32_t attribute_directory = 16;
constexpr std::int32_t attribute_archive = 32;
constexpr std::int32_t attribute_encrypted = 32768;

/// The facts about a member that `dunzipVB` returns. Its initial values are those that a caller sets before a listing.
struct ZipItemInfo {
    std::int64_t number = 100;
    std::int64_t uncompressedSize = 256;
    std::int64_t compressedSize = 512;
    std::int32_t method = 15;
    std::int32_t unread1 = 32;
    std::int32_t unread2 = 64;
    std::int32_t unread3 = 1024;
    std::string dateTime = "01/01/99 09:09";
    std::string fileName = "This is a filename";
    std::int32_t attributes = 0;
    std::int32_t unread4 = 10;
    std::int32_t unread5 = 11;
};

}  // namespace quill::zip
