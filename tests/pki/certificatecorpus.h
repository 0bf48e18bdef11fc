#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Certificates in DER form: those that the distribution brings along, where it is installed, and some
/// of ours with keys of all types and odd fields.
[[nodiscard]] const std::vector<std::string>& certificateCorpus();

/// How many at its end are ours.
inline constexpr std::size_t certificateCorpusOwn = 12;
