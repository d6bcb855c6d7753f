#pragma once

#include <functional>
#include <string_view>

/// The diagnostic trace: what a developer reads while looking for a fault, never part of the
/// output. Silent until somebody listens; one listener for the process.
///     if (cad::tracing()) cad::trace(expensive_description());
namespace cad {

/// The new listener; an empty function silences the trace again. A line comes without a line end.
void set_trace_sink(std::function<void(std::wstring_view)> sink);

/// Whether anybody listens: ask before building a costly line.
bool tracing();

/// Hands the line to the listener. Lines traced by the listener itself are dropped.
void trace(std::wstring_view line);

}  // namespace cad
