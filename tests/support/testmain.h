#pragma once

#include "resources/images.h"
#include "valuewidgets/images/icons.h"

#include <QApplication>
#include <QHashSeed>
#include <QTest>

/// A main function that starts like the program does: images registered, hash seed fixed.
#define ZANDREL_TEST_MAIN(TestClass)                                                               \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        registerConsoleImages();                                                                   \
        registerVeskWidgetImages();                                                                \
        QHashSeed::setDeterministicGlobalSeed();                                                   \
        QApplication application(argc, argv);                                                      \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
