#pragma once

#include <QByteArrayView>

/// True when the column and table settings that a database keeps for its forms can be walked
/// through to their end. They are of no use here; a damaged blob is worth telling.
bool isSoundPropertyBlob(QByteArrayView blob);
