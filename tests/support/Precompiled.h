#pragma once

// What nearly every test includes and takes long to read. Compiled once; a test still includes what it uses.
#include <contracts/AbstractCloudManager.h>
#include <contracts/AbstractFileManager.h>
#include <contracts/ICloudProtocol.h>
#include <contracts/NorlisCloudProtocol.h>

#include <QtCore/QtCore>
#include <QtGui/QImage>
#include <QtGui/QPixmap>
#include <QtTest/QSignalSpy>

#include <glog/logging.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
