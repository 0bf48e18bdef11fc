#pragma once

#include <QTreeView>

/// The table of the endpoints tab: gives its columns the width of their contents. Only the URL
/// column yields when the table is too narrow for all of them, so that long URLs are elided and the
/// security icons stay in sight.
class EndpointTable : public QTreeView
{
    Q_OBJECT

public:
    explicit EndpointTable(QWidget* parent = nullptr);

    /// Measures the first rows in sight; the cost doesn't grow with the number of rows.
    void resizeColumnsToContents();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void fitUrlColumn();
    [[nodiscard]] int roomForUrl() const;
};
