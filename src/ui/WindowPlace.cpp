#include "ui/WindowPlace.h"

#include <QHeaderView>
#include <QMainWindow>
#include <QSettings>
#include <QSplitter>
#include <QTableView>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

const QString geometryKey = u"Window/Geometry"_s;
const QString splitterKey = u"Window/Splitter"_s;
const QString columnsKey = u"Window/Columns"_s;

} // namespace

void WindowPlace::Restore(QMainWindow& window, QSplitter& splitter, QTableView& list) const {
    const QSettings file(fileName_, QSettings::IniFormat);
    window.restoreGeometry(file.value(geometryKey).toByteArray());
    splitter.restoreState(file.value(splitterKey).toByteArray());
    const QStringList widths = file.value(columnsKey).toStringList();
    if (widths.size() != list.model()->columnCount())
        return;
    for (int column = 0; column < widths.size(); ++column) {
        const int width = widths[column].toInt();
        if (width > 0)
            list.setColumnWidth(column, std::clamp(width, 20, 2000));
    }
}

void WindowPlace::Save(const QMainWindow& window, const QSplitter& splitter, const QTableView& list) const {
    QSettings file(fileName_, QSettings::IniFormat);
    file.setValue(geometryKey, window.saveGeometry());
    file.setValue(splitterKey, splitter.saveState());
    QStringList widths;
    for (int column = 0; column < list.model()->columnCount(); ++column)
        widths.append(QString::number(list.columnWidth(column)));
    file.setValue(columnsKey, widths);
}

} // namespace Brindle
