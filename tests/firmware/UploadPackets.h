// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "firmware/FirmwarePackage.h"
#include "firmware/PacketWords.h"
#include "session/PacketParam.h"

#include <gtest/gtest.h>

#include <vector>

struct UploadPacket
{
    PACKET_PARAM param;
    QByteArray payload;
};

// The packets that upload the package `bytes` in chunks of `chunkSize`: the
// header, then for each component marked in `send` its numbered chunks and
// its end, then the end of the package. Written out here on purpose, apart
// from the uploader and the recorder's reception, which both must agree
// with it. Header-only: the firmware and the simulator tests share it.
inline std::vector<UploadPacket> uploadPackets(const QByteArray &bytes, quint32 chunkSize,
                                               const std::vector<bool> &send)
{
    namespace W = firmware::PacketWords;
    firmware::FirmwarePackage::Fault fault;
    const auto package = firmware::FirmwarePackage::fromHeader(bytes, bytes.size(), &fault);
    EXPECT_TRUE(package);
    if (!package)
        return {};
    std::vector<UploadPacket> packets {
        {PACKET_PARAM {{W::Header, package->dataOffset()}}, package->header()}};
    quint32 total = 0;
    for (std::size_t i = 0; i < send.size(); ++i)
        total += send[i] ? package->components()[i].size : 0;
    quint32 number = 0;
    quint32 lastType = 0;
    for (std::size_t i = 0; i < send.size(); ++i) {
        if (!send[i])
            continue;
        const auto &c = package->components()[i];
        lastType = c.type;
        for (quint32 done = 0; done < c.size; done += chunkSize) {
            const quint32 length = std::min(chunkSize, c.size - done);
            const quint32 flag = done == 0 ? W::FirstChunk : W::LaterChunk;
            packets.push_back(
                {PACKET_PARAM {{W::Data, c.type, number++, total, c.size, length, flag}},
                 bytes.sliced(c.offset + done, length)});
        }
        packets.push_back(
            {PACKET_PARAM {{W::Data, c.type, number++, total, c.size, 0, W::EndOfComponent}}, {}});
    }
    packets.push_back(
        {PACKET_PARAM {{W::Data, lastType, number, total, 0, 0, W::EndOfPackage}}, {}});
    return packets;
}
