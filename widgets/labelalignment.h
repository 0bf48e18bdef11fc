#pragma once

#include <initializer_list>

class QLabel;

/// Gives labels one width, so that the inputs beside them stand in one line although they lie in
/// several groups. Call it again when the font or the style changes.
void alignLabels(std::initializer_list<QLabel*> labels);
