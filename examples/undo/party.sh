# SPDX-License-Identifier: Apache-2.0
# A client of a command port: one request that switches three lamps. The word is the number of the port.
printf 'foreach room ( hall kitchen stairs )\n lamp $room red\nend\n' | nc -N 127.0.0.1 "$1" > reply.txt
