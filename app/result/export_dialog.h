/// Writing the groups of the result to a file: for a spreadsheet, for another program, or to print.
#pragma once

#include <vector>

#include "app/parts/scope_box.h"
#include "ui/table_columns.h"

class QDialog;

namespace kestrel {

class AppDelegate;

/// Asks what, how and where, and writes it with these columns, which the table shows.
QDialog* newExportDialog(AppDelegate& delegate, ActionScope scope,
                         std::vector<const TableColumn*> columns, QWidget* parent);

}  // namespace kestrel
