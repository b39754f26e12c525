#pragma once

#include "SummaryRequest.h"

/// `pithwise plan`: prints what a run would ask of the engine, as JSON, without any model.
namespace PlanCommand {

/// The plan for `text`: the character count that decides between one pass and sections, and the
/// engine's calls in order, the note of section i standing as "<note i>".
std::string plan(const std::string& text, SummaryMode mode, SummaryLength length);

/// Runs the command and returns its exit status. Throws AppError.
int run(const SummaryRequest& request);

} // namespace PlanCommand
