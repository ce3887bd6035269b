#include "output/report_render.h"

#include <fstream>
#include <sstream>

#include <kainjow/mustache.hpp>

namespace rm {

namespace {

using kainjow::mustache::data;
using kainjow::mustache::mustache;

data Object(const ReportFields& fields) {
    data object{data::type::object};
    for (const ReportField& field : fields) object.set(field.key, field.text);
    return object;
}

std::string WithoutLineFeed(std::string title) {
    while (!title.empty() && title.back() == '\n') title.pop_back();
    return title;
}

data UserContext(const ReportTree& tree) {
    data user{data::type::object};
    data parameters{data::type::list};
    for (const ReportParameter& p : tree.user) {
        user.set(p.key, p.text);
        if (p.title.empty()) continue;
        data entry{data::type::object};
        entry.set("Key", p.key);
        entry.set("Title", p.title);
        entry.set("Label", WithoutLineFeed(p.title));
        entry.set("Text", p.text);
        parameters.push_back(entry);
    }
    user.set("Parameters", parameters);
    return user;
}

data DataContext(const ReportTree& tree) {
    data records{data::type::list};
    int index = 0;
    for (const ReportRecord& record : tree.records) {
        data row = Object(record.fields);
        row.set("Italic", record.italic);
        row.set("Index", std::to_string(++index));
        records.push_back(row);
    }
    data statistics{data::type::object};
    statistics.set("Mean", Object(tree.statistics.mean));
    statistics.set("StdDev", Object(tree.statistics.stdDev));
    statistics.set("Rm", Object(tree.statistics.rm));
    statistics.set("Total", Object(tree.statistics.total));
    data result{data::type::object};
    result.set("Records", records);
    result.set("HasRecords", !tree.records.empty());
    result.set("Statistics", statistics);
    return result;
}

data CollectionContext(const ReportTree& tree) {
    data collection = Object(tree.collection);
    data mismatched{data::type::list};
    for (const std::string& title : tree.mismatched) {
        data entry{data::type::object};
        entry.set("Label", WithoutLineFeed(title));
        mismatched.push_back(entry);
    }
    collection.set("Mismatch", !tree.mismatched.empty());
    collection.set("MismatchMessage", tree.MismatchMessage());
    collection.set("MismatchedParameters", mismatched);
    return collection;
}

}  // namespace

bool RenderReport(const std::string& templateText, const ReportTree& tree, std::string& html, std::string& error) {
    mustache view{templateText};
    if (!view.is_valid()) {
        error = "the report template is not valid: " + view.error_message();
        return false;
    }
    data context{data::type::object};
    context.set("User", UserContext(tree));
    context.set("Data", DataContext(tree));
    context.set("Collection", CollectionContext(tree));
    html = view.render(context);
    if (!view.is_valid()) {
        error = "the report template could not be rendered: " + view.error_message();
        html.clear();
        return false;
    }
    return true;
}

bool RenderReportFile(const std::string& templatePath, const ReportTree& tree, std::string& html,
                      std::string& error) {
    std::ifstream file(templatePath, std::ios::binary);
    if (!file) {
        error = templatePath + ": cannot open the report template";
        return false;
    }
    std::ostringstream text;
    text << file.rdbuf();
    if (!RenderReport(text.str(), tree, html, error)) {
        error = templatePath + ": " + error;
        return false;
    }
    return true;
}

}  // namespace rm
