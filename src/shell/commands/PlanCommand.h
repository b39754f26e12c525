#pragma once

#include "SummaryRequest.h"

/// `pithwise plan`: prints what a run would ask of the engine, as JSON, without any model.
namespace PlanCommand {

/// The plan for `text`: the number of characters, which decides between one pass and sections, and
/// the calls of the engine in order. "<note i>" stands for the note on section i.
std::string plan(const std::string& text, SummaryMode mode, SummaryLength length);

/// Runs the command and returns its exit status. Throws AppError.
int run(const SummaryRequest& request);

} // namespace PlanCommand
