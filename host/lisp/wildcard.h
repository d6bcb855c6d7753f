#pragma once

#include <string_view>

namespace cad::lisp {

/// Whether the text matches a wildcard pattern of the host, letter case counting:
///   *  any text          ?  any character       #  a digit      @  a letter
///   .  neither of them   [abc] [a-z] [~abc]  one of, not one of these
///   ~  in front: anything but                 ,  between alternatives     `  the next literally
/// Takes time proportional to both lengths at worst.
bool matches_wildcard(std::wstring_view text, std::wstring_view pattern);

}  // namespace cad::lisp
