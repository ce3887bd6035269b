#pragma once
// The measurement report's tree rendered through a Mustache template into HTML.
//
// The template sees:
//   User.<Key>              each parameter's text (User.TopFit, User.UnitDischarge, ...)
//   User.Parameters         the titled parameters in order, each {Key, Title, Label, Text};
//                           Label is the title without its line feed
//   Data.Records            one object per transect: its keys, Italic (true when the total
//                           discharge is more than 5% from the mean) and Index (1, 2, ...)
//   Data.HasRecords         true when there is at least one transect
//   Data.Statistics.Mean / StdDev / Rm / Total   the statistics rows by key
//   Collection.<Key>        the report's facts and the station's fields
//   Collection.Mismatch     true when parameters differ between transects;
//   Collection.MismatchMessage and Collection.MismatchedParameters ({Label} each)
// {{...}} escapes &, <, >, " and ' for HTML; {{{...}}} inserts a text as it is.

#include <string>

#include "output/report_tree.h"

namespace rm {

// Renders `templateText`. False with `error` when the template does not parse or render.
bool RenderReport(const std::string& templateText, const ReportTree& tree, std::string& html, std::string& error);

// Reads the template file and renders it; an unreadable template is an error naming the path.
bool RenderReportFile(const std::string& templatePath, const ReportTree& tree, std::string& html,
                      std::string& error);

}  // namespace rm
