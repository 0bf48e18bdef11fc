#pragma once

#include "console/veskserverconfigmodel.h"

#include <QAbstractItemModelTester>
#include <QIdentityProxyModel>

/// Holds the endpoint model against Qt's rules for models, but for two of them that it breaks on
/// purpose: it has as many rows below a cell as at the top, and the number of a row is data of its
/// place, so that it changes without a signal when a row above goes.
class ModelRules
{
public:
    explicit ModelRules(VeskServerConfigModel& model)
        : m_view(model)
        , m_tester(&m_view, QAbstractItemModelTester::FailureReportingMode::QtTest)
    {
    }

private:
    class View : public QIdentityProxyModel
    {
    public:
        explicit View(VeskServerConfigModel& model) { setSourceModel(&model); }

        [[nodiscard]] int rowCount(const QModelIndex& parent) const override
        {
            return parent.isValid() ? 0 : QIdentityProxyModel::rowCount(parent);
        }

        [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
        {
            const bool isNumber = index.column() == VeskServerConfigModel::NumberColumn;
            return isNumber ? QVariant() : QIdentityProxyModel::data(index, role);
        }
    };

    View m_view;
    QAbstractItemModelTester m_tester;
};
