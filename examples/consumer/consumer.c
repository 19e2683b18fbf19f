/* Converts one small UYVY frame to YUY2 through the dispatcher and checks the bytes. */
#include <stdio.h>
#include <string.h>

#include <zelt/zelt.h>

int main(void) {
  uint8_t uyvy[16] = {0x80, 0x10, 0x90, 0x20, 0x81, 0x11, 0x91, 0x21,
                      0x82, 0x12, 0x92, 0x22, 0x83, 0x13, 0x93, 0x23};
  uint8_t yuy2[16];
  const uint8_t want[16] = {0x10, 0x80, 0x20, 0x90, 0x11, 0x81, 0x21, 0x91,
                            0x12, 0x82, 0x22, 0x92, 0x13, 0x83, 0x23, 0x93};
  const uint32_t n = cycbcr_transcode(yuy2, uyvy, 4u, 2u, 8u, 8u, 0u, 0u, 0x32595559u /* YUY2 */, 0x59565955u /* UYVY */);
  if (n != 16 || memcmp(yuy2, want, sizeof want) != 0 || cycbcr_can_transcode(0x30313276u, 0u) != 1) {
    fprintf(stderr, "consumer: unexpected result (%u)\n", n);
    return 1;
  }
  puts("consumer: ok");
  return 0;
}
