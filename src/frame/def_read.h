#pragma once

#include <string>

namespace zav {

/// Names the program: the last part of its path. Keys of resource files and environment names are matched with it.
void DEF_prog(const std::string& name);
/// Sets the title, a name that stands for the program's; with a "+" in front it goes behind the program's.
void DEF_name(const std::string& name);
void DEF_title(const std::string& title);

/// Defines a tag for the conditional lines. 0, or -1 when there are ten.
int DEF_tag(const std::string& str);
/// Forgets all tags.
void DEF_clr_tag();

/// Opens a resource file, or the one in a directory; an empty name means ".zavdef". 0, or -1.
int DEF_open(const std::string& filename);
void DEF_close();
/// True if the open file is the user's or root's and nobody else may write it, so that its commands count.
bool DEF_trusted();
/// The next active pair of the open file: 1, or -1 at its end.
int DEF_get(std::string& resrc, std::string& value);

/// 1 if the key `string` of a file addresses the resource `resrc` of this program, else 0.
int DEF_cmp(const std::string& resrc, const std::string& string);
/// 1 if the key is addressed to this program at all, else 0.
int DEF_valid(const std::string& string);
/// The part of a key behind its last "." or "*".
std::string DEF_parse_name(const std::string& str);
/// 1 and the value if the environment holds the resource, else 0.
int DEF_env(const std::string& resrc, const std::string& env, std::string& value);

}  // namespace zav
