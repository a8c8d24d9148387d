#pragma once

#include "Json.hpp"

namespace volbrin {

/// A JSON text is UTF-8, and a file name may be any bytes. In files of our own that have to give
/// the very name back, a text that is no UTF-8 stands as an object: {"percent": "/a%FF"}, with "%"
/// and two hexadecimal digits for each byte that isn't plain ASCII, as in a URL (RFC 3986).

/// Puts such objects in the place of the texts of `value`, at any depth, that need them.
void escapeBytes(Json& value);

/// The way back; an object that isn't of that form stays.
void restoreBytes(Json& value);

}  // namespace volbrin
