#pragma once

#include <QString>

class QTreeView;

/// Where the operator is in a list, kept while the list is filled again: the current row with its
/// selection, known by its file, and what the view shows of the rows.
class ListPosition
{
public:
    /// `fileColumn` is the column of the view's model that holds the paths of the files.
    ListPosition(const QTreeView& view, int fileColumn);

    /// The current file has moved.
    void follow(const QString& newFile);

    /// Finds the file's row again and makes it current; of several the one that is nearest to the
    /// former. When it is gone, the row that came to its place takes over, or the last one.
    void restore(QTreeView& view) const;

private:
    [[nodiscard]] int findRow(const QTreeView& view) const;

    int m_fileColumn;
    QString m_file;
    int m_row = -1;
    int m_column = 0;
    bool m_isSelected = false;
    bool m_isInSight = false;
    int m_scrollPosition = 0;
};
