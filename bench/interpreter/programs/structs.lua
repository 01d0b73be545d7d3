-- Struct and array elements in a loop: a hundred particles moved a thousand times.
local cloud = {}
for i = 1, 100 do cloud[i] = {x = 0.0, v = 1.0} end
for i = 0, 99 do cloud[i + 1].v = 0.01 * i end
for step = 1, 1000 do
    for k = 1, 100 do
        cloud[k].x = cloud[k].x + cloud[k].v
        if cloud[k].x > 5.0 then cloud[k].v = -cloud[k].v end
        if cloud[k].x < 0.0 then cloud[k].v = -cloud[k].v end
    end
end
local centre = 0.0
for j = 1, 100 do centre = centre + cloud[j].x end
print("centre", centre / 100)
