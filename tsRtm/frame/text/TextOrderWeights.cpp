#include "tsRtm/frame/text/TextOrderWeights.hpp"

namespace tsRtm::textorder {
namespace {

// What a character of code page 1252 weighs: measured on German desktops, frozen. 0 is no weight at all.
struct CharacterWeights {
    uint8 code;
    uint16 base;    // letter, digit or sign; upper and lower case weigh the same
    uint16 second;  // the second letter of an expanding character ("ß" is "ss")
    uint8 accent;
    uint8 form;      // superscripts
    uint16 special;  // of a character that weighs only when all else is equal
};

// clang-format off
constexpr CharacterWeights kWeights[256] = {
    {0x00,      0,      0,    0,    0,      0},  // U+0000
    {0x01,      0,      0,    0,    0, 0x0312},  // U+0001
    {0x02,      0,      0,    0,    0, 0x0412},  // U+0002
    {0x03,      0,      0,    0,    0, 0x0512},  // U+0003
    {0x04,      0,      0,    0,    0, 0x0612},  // U+0004
    {0x05,      0,      0,    0,    0, 0x0712},  // U+0005
    {0x06,      0,      0,    0,    0, 0x0812},  // U+0006
    {0x07,      0,      0,    0,    0, 0x0912},  // U+0007
    {0x08,      0,      0,    0,    0, 0x0A12},  // U+0008
    {0x09, 0x0705,      0,    0,    0,      0},  // U+0009
    {0x0A, 0x0706,      0,    0,    0,      0},  // U+000A
    {0x0B, 0x0707,      0,    0,    0,      0},  // U+000B
    {0x0C, 0x0708,      0,    0,    0,      0},  // U+000C
    {0x0D, 0x0709,      0,    0,    0,      0},  // U+000D
    {0x0E,      0,      0,    0,    0, 0x0B12},  // U+000E
    {0x0F,      0,      0,    0,    0, 0x0C12},  // U+000F
    {0x10,      0,      0,    0,    0, 0x0D12},  // U+0010
    {0x11,      0,      0,    0,    0, 0x0E12},  // U+0011
    {0x12,      0,      0,    0,    0, 0x0F12},  // U+0012
    {0x13,      0,      0,    0,    0, 0x1012},  // U+0013
    {0x14,      0,      0,    0,    0, 0x1112},  // U+0014
    {0x15,      0,      0,    0,    0, 0x1212},  // U+0015
    {0x16,      0,      0,    0,    0, 0x1312},  // U+0016
    {0x17,      0,      0,    0,    0, 0x1412},  // U+0017
    {0x18,      0,      0,    0,    0, 0x1512},  // U+0018
    {0x19,      0,      0,    0,    0, 0x1612},  // U+0019
    {0x1A,      0,      0,    0,    0, 0x1712},  // U+001A
    {0x1B,      0,      0,    0,    0, 0x1812},  // U+001B
    {0x1C,      0,      0,    0,    0, 0x1912},  // U+001C
    {0x1D,      0,      0,    0,    0, 0x1A12},  // U+001D
    {0x1E,      0,      0,    0,    0, 0x1B12},  // U+001E
    {0x1F,      0,      0,    0,    0, 0x1C12},  // U+001F
    {0x20, 0x0702,      0,    0,    0,      0},  // U+0020
    {0x21, 0x071C,      0,    0,    0,      0},  // !
    {0x22, 0x071D,      0,    0,    0,      0},  // "
    {0x23, 0x071F,      0,    0,    0,      0},  // #
    {0x24, 0x0721,      0,    0,    0,      0},  // $
    {0x25, 0x0723,      0,    0,    0,      0},  // %
    {0x26, 0x0725,      0,    0,    0,      0},  // &
    {0x27,      0,      0,    0,    0, 0x8012},  // '
    {0x28, 0x0727,      0,    0,    0,      0},  // (
    {0x29, 0x072A,      0,    0,    0,      0},  // )
    {0x2A, 0x072D,      0,    0,    0,      0},  // *
    {0x2B, 0x0803,      0,    0,    0,      0},  // +
    {0x2C, 0x072F,      0,    0,    0,      0},  // ,
    {0x2D,      0,      0,    0,    0, 0x8212},  // -
    {0x2E, 0x0733,      0,    0,    0,      0},  // .
    {0x2F, 0x0735,      0,    0,    0,      0},  // /
    {0x30, 0x0D03,      0,    0,    0,      0},  // 0
    {0x31, 0x0D1A,      0,    0,    0,      0},  // 1
    {0x32, 0x0D1C,      0,    0,    0,      0},  // 2
    {0x33, 0x0D1E,      0,    0,    0,      0},  // 3
    {0x34, 0x0D20,      0,    0,    0,      0},  // 4
    {0x35, 0x0D22,      0,    0,    0,      0},  // 5
    {0x36, 0x0D24,      0,    0,    0,      0},  // 6
    {0x37, 0x0D26,      0,    0,    0,      0},  // 7
    {0x38, 0x0D28,      0,    0,    0,      0},  // 8
    {0x39, 0x0D2A,      0,    0,    0,      0},  // 9
    {0x3A, 0x0737,      0,    0,    0,      0},  // :
    {0x3B, 0x073A,      0,    0,    0,      0},  // ;
    {0x3C, 0x080E,      0,    0,    0,      0},  // <
    {0x3D, 0x0812,      0,    0,    0,      0},  // =
    {0x3E, 0x0814,      0,    0,    0,      0},  // >
    {0x3F, 0x073C,      0,    0,    0,      0},  // ?
    {0x40, 0x073E,      0,    0,    0,      0},  // @
    {0x41, 0x0E02,      0,    0,    0,      0},  // A
    {0x42, 0x0E09,      0,    0,    0,      0},  // B
    {0x43, 0x0E0A,      0,    0,    0,      0},  // C
    {0x44, 0x0E1A,      0,    0,    0,      0},  // D
    {0x45, 0x0E21,      0,    0,    0,      0},  // E
    {0x46, 0x0E23,      0,    0,    0,      0},  // F
    {0x47, 0x0E25,      0,    0,    0,      0},  // G
    {0x48, 0x0E2C,      0,    0,    0,      0},  // H
    {0x49, 0x0E32,      0,    0,    0,      0},  // I
    {0x4A, 0x0E35,      0,    0,    0,      0},  // J
    {0x4B, 0x0E36,      0,    0,    0,      0},  // K
    {0x4C, 0x0E48,      0,    0,    0,      0},  // L
    {0x4D, 0x0E51,      0,    0,    0,      0},  // M
    {0x4E, 0x0E70,      0,    0,    0,      0},  // N
    {0x4F, 0x0E7C,      0,    0,    0,      0},  // O
    {0x50, 0x0E7E,      0,    0,    0,      0},  // P
    {0x51, 0x0E89,      0,    0,    0,      0},  // Q
    {0x52, 0x0E8A,      0,    0,    0,      0},  // R
    {0x53, 0x0E91,      0,    0,    0,      0},  // S
    {0x54, 0x0E99,      0,    0,    0,      0},  // T
    {0x55, 0x0E9F,      0,    0,    0,      0},  // U
    {0x56, 0x0EA2,      0,    0,    0,      0},  // V
    {0x57, 0x0EA4,      0,    0,    0,      0},  // W
    {0x58, 0x0EA6,      0,    0,    0,      0},  // X
    {0x59, 0x0EA7,      0,    0,    0,      0},  // Y
    {0x5A, 0x0EA9,      0,    0,    0,      0},  // Z
    {0x5B, 0x073F,      0,    0,    0,      0},  // [
    {0x5C, 0x0741,      0,    0,    0,      0},  // backslash
    {0x5D, 0x0742,      0,    0,    0,      0},  // ]
    {0x5E, 0x0743,      0,    0,    0,      0},  // ^
    {0x5F, 0x0744,      0,    0,    0,      0},  // _
    {0x60, 0x0748,      0,    0,    0,      0},  // `
    {0x61, 0x0E02,      0,    0,    0,      0},  // a
    {0x62, 0x0E09,      0,    0,    0,      0},  // b
    {0x63, 0x0E0A,      0,    0,    0,      0},  // c
    {0x64, 0x0E1A,      0,    0,    0,      0},  // d
    {0x65, 0x0E21,      0,    0,    0,      0},  // e
    {0x66, 0x0E23,      0,    0,    0,      0},  // f
    {0x67, 0x0E25,      0,    0,    0,      0},  // g
    {0x68, 0x0E2C,      0,    0,    0,      0},  // h
    {0x69, 0x0E32,      0,    0,    0,      0},  // i
    {0x6A, 0x0E35,      0,    0,    0,      0},  // j
    {0x6B, 0x0E36,      0,    0,    0,      0},  // k
    {0x6C, 0x0E48,      0,    0,    0,      0},  // l
    {0x6D, 0x0E51,      0,    0,    0,      0},  // m
    {0x6E, 0x0E70,      0,    0,    0,      0},  // n
    {0x6F, 0x0E7C,      0,    0,    0,      0},  // o
    {0x70, 0x0E7E,      0,    0,    0,      0},  // p
    {0x71, 0x0E89,      0,    0,    0,      0},  // q
    {0x72, 0x0E8A,      0,    0,    0,      0},  // r
    {0x73, 0x0E91,      0,    0,    0,      0},  // s
    {0x74, 0x0E99,      0,    0,    0,      0},  // t
    {0x75, 0x0E9F,      0,    0,    0,      0},  // u
    {0x76, 0x0EA2,      0,    0,    0,      0},  // v
    {0x77, 0x0EA4,      0,    0,    0,      0},  // w
    {0x78, 0x0EA6,      0,    0,    0,      0},  // x
    {0x79, 0x0EA7,      0,    0,    0,      0},  // y
    {0x7A, 0x0EA9,      0,    0,    0,      0},  // z
    {0x7B, 0x074A,      0,    0,    0,      0},  // {
    {0x7C, 0x074C,      0,    0,    0,      0},  // |
    {0x7D, 0x074E,      0,    0,    0,      0},  // }
    {0x7E, 0x0750,      0,    0,    0,      0},  // ~
    {0x7F,      0,      0,    0,    0, 0x1D12},  // U+007F
    {0x80, 0x07A9,      0,    0,    0,      0},  // €
    {0x81, 0x0CFA,      0, 0x1E,    0,      0},  // U+0081
    {0x82, 0x077B,      0,    0,    0,      0},  // ‚
    {0x83, 0x0E23,      0, 0x43,    0,      0},  // ƒ
    {0x84, 0x077F,      0,    0,    0,      0},  // „
    {0x85, 0x0A10,      0,    0,    0,      0},  // …
    {0x86, 0x0B25,      0,    0,    0,      0},  // †
    {0x87, 0x0B26,      0,    0,    0,      0},  // ‡
    {0x88, 0x0743,      0,    0,    0,      0},  // ˆ
    {0x89, 0x0B2C,      0, 0x0C,    0,      0},  // ‰
    {0x8A, 0x0E91,      0, 0x14,    0,      0},  // Š
    {0x8B, 0x0788,      0,    0,    0,      0},  // ‹
    {0x8C, 0x0E7C, 0x0E21,    0,    0,      0},  // Œ
    {0x8D, 0x0CFA,      0, 0x2A,    0,      0},  // U+008D
    {0x8E, 0x0EA9,      0, 0x14,    0,      0},  // Ž
    {0x8F, 0x0CFA,      0, 0x2C,    0,      0},  // U+008F
    {0x90, 0x0CFA,      0, 0x2D,    0,      0},  // U+0090
    {0x91, 0x0779,      0,    0,    0,      0},  // ‘
    {0x92, 0x077A,      0,    0,    0,      0},  // ’
    {0x93, 0x077D,      0,    0,    0,      0},  // “
    {0x94, 0x077E,      0,    0,    0,      0},  // ”
    {0x95, 0x0B27,      0,    0,    0,      0},  // •
    {0x96,      0,      0,    0,    0, 0x8912},  // –
    {0x97,      0,      0,    0,    0, 0x9012},  // —
    {0x98, 0x075D,      0,    0,    0,      0},  // ˜
    {0x99, 0x0E9C,      0,    0,    0,      0},  // ™
    {0x9A, 0x0E91,      0, 0x14,    0,      0},  // š
    {0x9B, 0x0789,      0,    0,    0,      0},  // ›
    {0x9C, 0x0E7C, 0x0E21,    0,    0,      0},  // œ
    {0x9D, 0x0CFA,      0, 0x3A,    0,      0},  // U+009D
    {0x9E, 0x0EA9,      0, 0x14,    0,      0},  // ž
    {0x9F, 0x0EA7,      0, 0x13,    0,      0},  // Ÿ
    {0xA0, 0x0704,      0,    0,    0,      0},  // U+00A0
    {0xA1, 0x0751,      0,    0,    0,      0},  // ¡
    {0xA2, 0x0797,      0,    0,    0,      0},  // ¢
    {0xA3, 0x0798,      0,    0,    0,      0},  // £
    {0xA4, 0x0799,      0,    0,    0,      0},  // ¤
    {0xA5, 0x079A,      0,    0,    0,      0},  // ¥
    {0xA6, 0x0752,      0,    0,    0,      0},  // ¦
    {0xA7, 0x0A06,      0,    0,    0,      0},  // §
    {0xA8, 0x0753,      0,    0,    0,      0},  // ¨
    {0xA9, 0x0A07,      0,    0,    0,      0},  // ©
    {0xAA, 0x0E02,      0, 0x03, 0x06,      0},  // ª
    {0xAB, 0x0818,      0,    0,    0,      0},  // «
    {0xAC, 0x0A08,      0,    0,    0,      0},  // ¬
    {0xAD,      0,      0,    0,    0,      0},  // U+00AD
    {0xAE, 0x0A09,      0,    0,    0,      0},  // ®
    {0xAF, 0x0754,      0,    0,    0,      0},  // ¯
    {0xB0, 0x0A0A,      0,    0,    0,      0},  // °
    {0xB1, 0x0817,      0,    0,    0,      0},  // ±
    {0xB2, 0x0D1C,      0,    0, 0x06,      0},  // ²
    {0xB3, 0x0D1E,      0,    0, 0x06,      0},  // ³
    {0xB4, 0x0755,      0,    0,    0,      0},  // ´
    {0xB5, 0x0A0B,      0,    0,    0,      0},  // µ
    {0xB6, 0x0A0C,      0,    0,    0,      0},  // ¶
    {0xB7, 0x0A0D,      0,    0,    0,      0},  // ·
    {0xB8, 0x0756,      0,    0,    0,      0},  // ¸
    {0xB9, 0x0D1A,      0,    0, 0x06,      0},  // ¹
    {0xBA, 0x0E7C,      0, 0x03, 0x06,      0},  // º
    {0xBB, 0x081A,      0,    0,    0,      0},  // »
    {0xBC, 0x0D0D,      0,    0,    0,      0},  // ¼
    {0xBD, 0x0D11,      0,    0,    0,      0},  // ½
    {0xBE, 0x0D15,      0,    0,    0,      0},  // ¾
    {0xBF, 0x0757,      0,    0,    0,      0},  // ¿
    {0xC0, 0x0E02,      0, 0x0F,    0,      0},  // À
    {0xC1, 0x0E02,      0, 0x0E,    0,      0},  // Á
    {0xC2, 0x0E02,      0, 0x12,    0,      0},  // Â
    {0xC3, 0x0E02,      0, 0x19,    0,      0},  // Ã
    {0xC4, 0x0E02,      0, 0x13,    0,      0},  // Ä
    {0xC5, 0x0E02,      0, 0x1A,    0,      0},  // Å
    {0xC6, 0x0E02, 0x0E21,    0,    0,      0},  // Æ
    {0xC7, 0x0E0A,      0, 0x1C,    0,      0},  // Ç
    {0xC8, 0x0E21,      0, 0x0F,    0,      0},  // È
    {0xC9, 0x0E21,      0, 0x0E,    0,      0},  // É
    {0xCA, 0x0E21,      0, 0x12,    0,      0},  // Ê
    {0xCB, 0x0E21,      0, 0x13,    0,      0},  // Ë
    {0xCC, 0x0E32,      0, 0x0F,    0,      0},  // Ì
    {0xCD, 0x0E32,      0, 0x0E,    0,      0},  // Í
    {0xCE, 0x0E32,      0, 0x12,    0,      0},  // Î
    {0xCF, 0x0E32,      0, 0x13,    0,      0},  // Ï
    {0xD0, 0x0E1A,      0, 0x68,    0,      0},  // Ð
    {0xD1, 0x0E70,      0, 0x19,    0,      0},  // Ñ
    {0xD2, 0x0E7C,      0, 0x0F,    0,      0},  // Ò
    {0xD3, 0x0E7C,      0, 0x0E,    0,      0},  // Ó
    {0xD4, 0x0E7C,      0, 0x12,    0,      0},  // Ô
    {0xD5, 0x0E7C,      0, 0x19,    0,      0},  // Õ
    {0xD6, 0x0E7C,      0, 0x13,    0,      0},  // Ö
    {0xD7, 0x081C,      0,    0,    0,      0},  // ×
    {0xD8, 0x0E7C,      0, 0x21,    0,      0},  // Ø
    {0xD9, 0x0E9F,      0, 0x0F,    0,      0},  // Ù
    {0xDA, 0x0E9F,      0, 0x0E,    0,      0},  // Ú
    {0xDB, 0x0E9F,      0, 0x12,    0,      0},  // Û
    {0xDC, 0x0E9F,      0, 0x13,    0,      0},  // Ü
    {0xDD, 0x0EA7,      0, 0x0E,    0,      0},  // Ý
    {0xDE, 0x0E99, 0x0E2C,    0,    0,      0},  // Þ
    {0xDF, 0x0E91, 0x0E91,    0,    0,      0},  // ß
    {0xE0, 0x0E02,      0, 0x0F,    0,      0},  // à
    {0xE1, 0x0E02,      0, 0x0E,    0,      0},  // á
    {0xE2, 0x0E02,      0, 0x12,    0,      0},  // â
    {0xE3, 0x0E02,      0, 0x19,    0,      0},  // ã
    {0xE4, 0x0E02,      0, 0x13,    0,      0},  // ä
    {0xE5, 0x0E02,      0, 0x1A,    0,      0},  // å
    {0xE6, 0x0E02, 0x0E21,    0,    0,      0},  // æ
    {0xE7, 0x0E0A,      0, 0x1C,    0,      0},  // ç
    {0xE8, 0x0E21,      0, 0x0F,    0,      0},  // è
    {0xE9, 0x0E21,      0, 0x0E,    0,      0},  // é
    {0xEA, 0x0E21,      0, 0x12,    0,      0},  // ê
    {0xEB, 0x0E21,      0, 0x13,    0,      0},  // ë
    {0xEC, 0x0E32,      0, 0x0F,    0,      0},  // ì
    {0xED, 0x0E32,      0, 0x0E,    0,      0},  // í
    {0xEE, 0x0E32,      0, 0x12,    0,      0},  // î
    {0xEF, 0x0E32,      0, 0x13,    0,      0},  // ï
    {0xF0, 0x0E1A,      0, 0x68,    0,      0},  // ð
    {0xF1, 0x0E70,      0, 0x19,    0,      0},  // ñ
    {0xF2, 0x0E7C,      0, 0x0F,    0,      0},  // ò
    {0xF3, 0x0E7C,      0, 0x0E,    0,      0},  // ó
    {0xF4, 0x0E7C,      0, 0x12,    0,      0},  // ô
    {0xF5, 0x0E7C,      0, 0x19,    0,      0},  // õ
    {0xF6, 0x0E7C,      0, 0x13,    0,      0},  // ö
    {0xF7, 0x081D,      0,    0,    0,      0},  // ÷
    {0xF8, 0x0E7C,      0, 0x21,    0,      0},  // ø
    {0xF9, 0x0E9F,      0, 0x0F,    0,      0},  // ù
    {0xFA, 0x0E9F,      0, 0x0E,    0,      0},  // ú
    {0xFB, 0x0E9F,      0, 0x12,    0,      0},  // û
    {0xFC, 0x0E9F,      0, 0x13,    0,      0},  // ü
    {0xFD, 0x0EA7,      0, 0x0E,    0,      0},  // ý
    {0xFE, 0x0E99, 0x0E2C,    0,    0,      0},  // þ
    {0xFF, 0x0EA7,      0, 0x13,    0,      0},  // ÿ
};
// clang-format on

constexpr bool inCodeOrder() {
    for (std::size_t code = 0; code < 256; ++code)
        if (kWeights[code].code != code) return false;
    return true;
}
static_assert(inCodeOrder());

// The place of a weight among the different weights of its kind.
class Ranking {
 public:
    constexpr void add(uint16 weight) {
        std::size_t at = 0;
        while (at < count_ && weights_[at] < weight) ++at;
        if (weight == 0 || (at < count_ && weights_[at] == weight)) return;
        for (std::size_t i = count_++; i > at; --i) weights_[i] = weights_[i - 1];
        weights_[at] = weight;
    }

    constexpr uint8 of(uint16 weight) const {
        if (weight == 0) return 0;
        std::size_t at = 0;
        while (weights_[at] != weight) ++at;
        const std::size_t rank = kFirstRank + at;
        if (rank >= kForeign) throw "more weights than a byte holds";
        return static_cast<uint8>(rank);
    }

 private:
    std::array<uint16, 512> weights_{};
    std::size_t count_ = 0;
};

consteval Tables makeTables() {
    Ranking base, accent, form, special;
    for (const auto& row : kWeights) {
        base.add(row.base);
        base.add(row.second);
        accent.add(row.accent);
        form.add(row.form);
        special.add(row.special);
    }
    Tables made{};
    for (const auto& row : kWeights) {
        const auto code = row.code;
        made.base[code] = base.of(row.base);
        made.second[code] = base.of(row.second);
        made.accent[code] = accent.of(row.accent);
        made.form[code] = form.of(row.form);
        made.special[code] = special.of(row.special);
        const unsigned marks = (row.accent != 0 ? kAccented : 0) | (row.form != 0 ? kFormed : 0) |
                               (row.special != 0 ? kSpecial : 0);
        made.quick[code] = static_cast<uint16>((row.second == 0 ? made.base[code] : 0) | marks);
    }
    return made;
}

}  // namespace

constinit const Tables tables = makeTables();

}  // namespace tsRtm::textorder
