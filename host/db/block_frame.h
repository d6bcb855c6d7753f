#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/db/drawing.h"
#include "host/geometry/point3d.h"

/// Blocks as the drawing has them: a record in the block table (not in R12), and in the section
/// BLOCKS a BLOCK and an ENDBLK around the entities.
namespace cad {

inline constexpr std::int64_t kAnonymousBlock = 1, kBlockWithAttributes = 2;

inline constexpr std::string_view kBlockBegin = "AcDbBlockBegin";
inline constexpr std::string_view kBlockEnd = "AcDbBlockEnd";

/// Whether a name is one of those that the drawing gives by itself: *U1, *D12.
bool is_anonymous_block(std::wstring_view name);
/// *Model_Space, *Paper_Space, *Paper_Space0 ...
bool is_space_name(std::wstring_view name);
/// The next free name of an anonymous block from `number` on: *U1, *U2 ... `number` is behind it
/// then.
std::wstring anonymous_block_name(Drawing& drawing, wchar_t letter, std::uint64_t& number);

/// The block of that name, found in the block table where there is one. Null when there is none.
Stub* block_record_or_begin(Drawing& drawing, std::wstring_view name);

/// A new record of the block table. The drawing has the table.
Stub& add_block_record(Drawing& drawing, std::wstring_view name);
/// BLOCK and ENDBLK of a record, or with owner 0 of a drawing without block records. The BLOCK.
Stub& add_block_frame(Drawing& drawing, std::uint64_t owner, std::wstring_view name,
                      const AcGePoint3d& base, std::int64_t flags);
/// Both of them. The record, or where there is none the BLOCK.
Stub& add_empty_block(Drawing& drawing, std::wstring_view name, const AcGePoint3d& base,
                      std::int64_t flags);
/// Erases a block's entities and gives it another base point. Its record or BLOCK.
Stub& empty_block(Drawing& drawing, const Drawing::Block& block, const AcGePoint3d& base,
                  std::int64_t flags);

}  // namespace cad
