#pragma once

#include <span>
#include <string_view>

#include "host/base/result.h"
#include "host/db/database.h"
#include "host/db/group_list.h"

/// Objects made and changed by their groups. Groups may come in any order; class markers (100) may
/// be left out where the host knows the kind. What belongs to an object that exists already is
/// passed over, so that the groups of one object can make another: its name, handle, owner and
/// groups in braces. An error names the kind and the group that is wrong or missing; then nothing
/// was made or changed.
namespace cad {

/// An entity at the end of `block` (a block record; in a drawing that has none, the BLOCK itself).
/// The null id stands for the layout that group 410 or 67 names, else for the current space.
/// Layer, colour, linetype and style default to the drawing's current ones; a layer the drawing
/// lacks is made; a block, style or linetype it lacks is an error, as is extended data of an
/// application that is not registered.
/// A POLYLINE, or an INSERT with attributes (66 is 1), takes its VERTEXs or ATTRIBs as `parts`; the
/// SEQEND is added.
Result<AcDbObjectId> make_entity(AcDbDatabase& database, AcDbObjectId block,
                                 const GroupList& groups, std::span<const GroupList> parts = {});

/// A record of a symbol table: LAYER, STYLE, LTYPE, APPID, DIMSTYLE, VIEW, UCS. The name must be
/// new.
Result<AcDbObjectId> make_record(AcDbDatabase& database, const GroupList& groups);

/// An object without owner, to be filed in a dictionary: XRECORD, DICTIONARY, ...
Result<AcDbObjectId> make_object(AcDbDatabase& database, const GroupList& groups);

/// A block of these entities; VERTEXs, ATTRIBs and SEQENDs stand behind the entity they belong to.
/// The names *U, *D, *X... ask for the next free anonymous name. A block of that name, and one not
/// yet used, gets the new contents in place of its own. The id is that of the block record, or, in
/// a drawing that has none (R12), of the BLOCK.
Result<AcDbObjectId> make_block(AcDbDatabase& database, std::wstring_view name,
                                const AcGePoint3d& base, std::span<const GroupList> entities = {});

/// Merges groups into an object: those named replace, others keep their bytes. Groups that repeat
/// (vertices of a LWPOLYLINE, the pieces of a MTEXT, the data of an XRECORD) are replaced together.
/// Extended data is replaced per application; an application without data loses it. Kind and handle
/// cannot change, nor can an entity on a locked layer. A name (2) that changes renames the table
/// record everywhere.
Status change_object(AcDbObjectId id, const GroupList& groups);

// The same for groups that are not copied.
Result<AcDbObjectId> make_entity(AcDbDatabase& database, AcDbObjectId block,
                                 std::span<const GroupView> groups,
                                 std::span<const std::vector<GroupView>> parts = {});
Result<AcDbObjectId> make_record(AcDbDatabase& database, std::span<const GroupView> groups);
Result<AcDbObjectId> make_object(AcDbDatabase& database, std::span<const GroupView> groups);
Status change_object(AcDbObjectId id, std::span<const GroupView> groups);

/// Whether make_entity() would take these groups.
Status check_entity(AcDbDatabase& database, std::span<const GroupView> groups,
                    std::span<const std::vector<GroupView>> parts = {});
/// The same for one VERTEX, ATTRIB or SEQEND by itself, and for an entity whose parts are to come.
Status check_part(AcDbDatabase& database, std::span<const GroupView> groups);
Status check_main(AcDbDatabase& database, std::span<const GroupView> groups);

/// The layer of that name, made (white, Continuous) when the drawing lacks it.
Result<AcDbObjectId> ensure_layer(AcDbDatabase& database, std::wstring_view name);
/// Registers an application. An error when the name is none, or already registered.
Result<AcDbObjectId> register_application(AcDbDatabase& database, std::wstring_view name);

/// Whether a text may name a table record: 1 to 255 characters, none of < > / \ " : ; ? * | , = `,
/// and in drawings before R2000 at most 31 letters, digits, $ - _.
bool is_symbol_name(std::wstring_view name, bool long_names = true);

}  // namespace cad
