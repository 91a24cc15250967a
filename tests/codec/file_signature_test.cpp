#include "codec/recovery/file_signature.h"

#include "codec/recovery/content_name.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace quill::codec {
namespace {

using namespace std::string_view_literals;

std::string_view extension_of(std::string_view beginning) {
    const FileSignature* signature = signature_of(beginning);
    return signature == nullptr ? std::string_view() : signature->extension;
}

TEST(FileSignature, IsKnownByTheBytesAtItsPlacesOnly) {
    const std::string tar = std::string(257, '\0') + "ustar";
    EXPECT_EQ(extension_of(tar), ".tar");
    EXPECT_EQ(extension_of(tar.substr(1)), "");
    EXPECT_EQ(extension_of("RIFF....WAVE"), ".wav");
    EXPECT_EQ(extension_of("the old WAVE"), "");
    EXPECT_EQ(extension_of("BZh91AY&SY"), ".bz2");
}

TEST(FileSignature, IsNotSeenWhereTheBytesBeginLikeItAndGoOnOtherwise) {
    const std::string_view others[] = {
        "",
        "P",
        "\xFF",
        "\xFF\xD8",
        "\xFF\xFB\x90\x64",     // a frame of an MP3 sound
        "\xFF\xFEt\0e\0"sv,     // UTF-16
        "GIF is a format",      //
        "GIF88a",               //
        "BZhang and others",    //
        "ID3 is a tag",         //
        "MZ is a state",        //
        "PKZIP",                //
        "\x89PNG\n\n\x1A\n"sv,  // line ends changed in transit
    };
    for (const std::string_view bytes : others) EXPECT_EQ(extension_of(bytes), "") << bytes;
}

TEST(FileSignature, GivesNoNameToAProgram) {
    for (const std::string_view program : {"MZ\x90\0"sv, "\x7F\x45LF"sv}) {
        EXPECT_EQ(signature_of(program)->kind, FileKind::program);
        EXPECT_EQ(made_up_name(false, "", program), "attachment.bin");
    }
}

}  // namespace
}  // namespace quill::codec
