// The sample picture: a still life with something for every kind of operation.
//
//   colours          the pencils, the fruit and the chart of twenty-four patches
//   skin-like tones  the eggs, from porcelain to umber
//   greys            the staircase of eleven equal steps and the chart's last row
//   flat areas       the chart's patches, which take no light, and the moon on the wall
//   fine detail      the dandelion's hairs, the ruled card, the planks and the weave of the cloth
//   transparency     the glass ball, and a brass one that mirrors the room
//
// Rendered by `./dev scene`.
#version 3.7;

global_settings {
    assumed_gamma 1.0
    max_trace_level 12
    radiosity { count 160 error_bound 0.6 recursion_limit 2 pretrace_end 0.01 brightness 0.9 }
}

#declare Matte = finish { ambient 0 diffuse 0.8 }
#declare Glazed = finish { ambient 0 diffuse 0.75 specular 0.5 roughness 0.008 reflection { 0.02, 0.25 fresnel on } conserve_energy }
#declare Printed = finish { ambient 0 diffuse 0 emission 1 }
#declare Chance = seed(2013);

camera {
    location <0.2, 3.5, -10.5>
    look_at <0.05, 1.62, 0>
    right x * image_width / image_height
    angle 40
}

// A window behind the left shoulder, and a little warmth from the right.
light_source {
    <-9, 11, -9> srgb <1.0, 0.96, 0.88> * 1.35
    area_light x * 3, y * 3, 6, 6 adaptive 1 jitter circular orient
}
light_source { <9, 6, -6> srgb <1.0, 0.72, 0.5> * 0.22 shadowless }
sky_sphere { pigment { gradient y color_map { [0 srgb <0.62, 0.66, 0.72>] [1 srgb <0.85, 0.9, 1.0>] } } }

// ---- the room

plane { z, 4.2 inverse
    pigment { srgb <0.16, 0.38, 0.42> } finish { Matte }
}

cylinder { <3.3, 3.55, 4.15>, <3.3, 3.55, 4.1>, 0.72 pigment { srgb <0.98, 0.86, 0.55> } finish { Printed } no_shadow }

#declare Plank = 1.15;
#declare Row = -8;
#while (Row < 5)
    box { <-12, -0.3, Row>, <12, 0, Row + Plank - 0.03>
        texture {
            pigment {
                wood turbulence 0.06 octaves 4
                color_map {
                    [0.0 srgb <0.70, 0.50, 0.32>] [0.45 srgb <0.62, 0.42, 0.26>]
                    [0.8 srgb <0.50, 0.32, 0.19>] [1.0 srgb <0.70, 0.50, 0.32>]
                }
                scale 0.16 rotate y * 90 rotate <2, 0.5, 1.5> translate <rand(Chance) * 9, rand(Chance) * 2, rand(Chance) * 3>
            }
            finish { ambient 0 diffuse 0.75 specular 0.12 roughness 0.05 reflection { 0.0, 0.12 fresnel on } conserve_energy }
        }
        interior { ior 1.4 }
    }
    #declare Row = Row + Plank;
#end

// ---- the chart: hues, their pale and deep companions, skin tones, greys

#declare Patches = array[24] {
    srgb <0.90, 0.10, 0.12>, srgb <0.96, 0.51, 0.10>, srgb <1.00, 0.85, 0.10>, srgb <0.24, 0.70, 0.29>, srgb <0.00, 0.45, 0.85>, srgb <0.50, 0.15, 0.65>,
    srgb <0.00, 0.75, 0.78>, srgb <0.94, 0.20, 0.65>, srgb <0.70, 0.85, 0.20>, srgb <0.45, 0.28, 0.12>, srgb <0.10, 0.16, 0.45>, srgb <0.98, 0.70, 0.72>,
    srgb <0.98, 0.86, 0.77>, srgb <0.92, 0.74, 0.62>, srgb <0.82, 0.60, 0.46>, srgb <0.66, 0.44, 0.31>, srgb <0.46, 0.29, 0.20>, srgb <0.27, 0.17, 0.12>,
    srgb 1.0, srgb 0.8, srgb 0.6, srgb 0.4, srgb 0.2, srgb 0.0
}
union {
    box { <-0.08, -0.08, 0>, <2.48, 1.68, 0.05> pigment { srgb <0.13, 0.13, 0.14> } finish { Matte } }
    #declare Patch = 0;
    #while (Patch < 24)
        #declare Column = mod(Patch, 6);
        #declare Line = 3 - int(Patch / 6);
        box { <Column * 0.4 + 0.03, Line * 0.4 + 0.03, -0.01>, <Column * 0.4 + 0.37, Line * 0.4 + 0.37, 0.02>
            pigment { Patches[Patch] } finish { Printed }
        }
        #declare Patch = Patch + 1;
    #end
    translate <-4.35, 1.75, 4.1>
}

// ---- the staircase of greys

#declare Step = 0;
union {
    #while (Step < 11)
        box { <Step * 0.2, 0, 0>, <Step * 0.2 + 0.2, 0.12 + Step * 0.07, 0.5> pigment { srgb Step / 10 } finish { Matte } }
        #declare Step = Step + 1;
    #end
    rotate y * -12
    translate <1.65, 0, 0.75>
}

// ---- pencils in a glazed cup

#macro Pencil(Colour, Tilt, Turn, Length)
    union {
        cylinder { 0, y * Length, 0.075 pigment { Colour } finish { Glazed } interior { ior 1.45 } }
        cone { y * Length, 0.075, y * (Length + 0.22), 0.018 pigment { srgb <0.90, 0.74, 0.54> } finish { Matte } }
        cone { y * (Length + 0.20), 0.021, y * (Length + 0.28), 0.0 pigment { Colour } finish { Matte } }
        rotate z * Tilt
        rotate y * Turn
    }
#end
union {
    difference {
        cone { 0, 0.42, y * 1.15, 0.5 }
        cone { y * 0.08, 0.36, y * 1.2, 0.45 }
        pigment { gradient y color_map { [0.62 srgb <0.11, 0.22, 0.55>] [0.62 srgb <0.93, 0.92, 0.88>] [0.70 srgb <0.93, 0.92, 0.88>] [0.70 srgb <0.11, 0.22, 0.55>] } scale 1.2 }
        finish { Glazed } interior { ior 1.5 }
    }
    union {
        Pencil(srgb <0.90, 0.12, 0.14>, 13, 0, 1.95)
        Pencil(srgb <0.97, 0.52, 0.08>, 12, 50, 2.10)
        Pencil(srgb <1.00, 0.84, 0.10>, 10, 105, 1.85)
        Pencil(srgb <0.22, 0.66, 0.28>, 13, 160, 2.05)
        Pencil(srgb <0.05, 0.47, 0.86>, 13, 205, 1.90)
        Pencil(srgb <0.48, 0.18, 0.66>, 11, 255, 2.15)
        Pencil(srgb <0.92, 0.22, 0.62>, 12, 305, 1.98)
        Pencil(srgb <0.08, 0.08, 0.09>, 3, 20, 2.25)
        translate y * 0.1
    }
    translate <-0.55, 0, 1.7>
}

// ---- eggs, porcelain to umber, on a woven cloth

#declare Weave = pigment {
    checker
        pigment { gradient x color_map { [0.0 srgb <0.86, 0.83, 0.78>] [0.5 srgb <0.97, 0.95, 0.91>] [1.0 srgb <0.86, 0.83, 0.78>] } scale 0.045 }
        pigment { gradient z color_map { [0.0 srgb <0.80, 0.77, 0.72>] [0.5 srgb <0.93, 0.91, 0.87>] [1.0 srgb <0.80, 0.77, 0.72>] } scale 0.045 }
    scale <0.09, 1, 0.09>
}
box { <-1.95, 0, -1.0>, <1.55, 0.025, 0.72>
    pigment { Weave } finish { Matte }
    rotate y * 6 translate <-0.75, 0, -1.55>
}

#macro Egg(Colour, Place, Turn)
    sphere { 0, 1
        scale <0.36, 0.36, 0.46> rotate y * Turn
        pigment { Colour } finish { ambient 0 diffuse 0.8 specular 0.12 roughness 0.06 }
        translate Place + y * 0.38
    }
#end
Egg(srgb <0.98, 0.87, 0.79>, <-2.35, 0, -1.55>, 25)
Egg(srgb <0.93, 0.75, 0.63>, <-1.62, 0, -2.05>, -35)
Egg(srgb <0.83, 0.61, 0.47>, <-1.55, 0, -1.10>, 80)
Egg(srgb <0.67, 0.45, 0.32>, <-0.80, 0, -1.62>, 15)
Egg(srgb <0.47, 0.30, 0.21>, <-0.02, 0, -2.00>, -50)
Egg(srgb <0.29, 0.18, 0.13>, <-0.05, 0, -1.15>, 60)

// ---- glass and brass

sphere { <1.12, 0.62, -0.75>, 0.62
    pigment { srgbt <0.97, 1.0, 0.99, 0.97> }
    finish { ambient 0 diffuse 0.02 specular 0.8 roughness 0.002 reflection { 0.02, 1.0 fresnel on } conserve_energy }
    interior { ior 1.5 }
}
sphere { <2.75, 0.42, -0.95>, 0.42
    pigment { srgb <0.86, 0.66, 0.28> }
    finish { ambient 0 diffuse 0.25 specular 0.7 roughness 0.01 metallic reflection { 0.55 metallic } conserve_energy }
}

// ---- a card of ruled lines, fanning out to below one pixel

union {
    box { <0, 0, 0>, <1.5, 0.012, 1.0> pigment { srgb 0.97 } finish { Matte } }
    #declare Rule = 0;
    #while (Rule < 24)
        cylinder { <0.75 + (Rule - 11.5) * 0.055, 0.012, 0.08>, <0.75 + (Rule - 11.5) * 0.012, 0.012, 0.92>, 0.006
            pigment { srgb <0.08, 0.10, 0.35> } finish { Matte }
        }
        #declare Rule = Rule + 1;
    #end
    rotate y * -24
    translate <1.35, 0, -3.05>
}

// ---- a dandelion clock in a small red vase

#declare Head = <0.98, 3.35, 1.95>;
union {
    lathe { cubic_spline 8,
        <0.05, -0.1>, <0.24, 0.0>, <0.36, 0.28>, <0.27, 0.62>, <0.12, 0.92>, <0.10, 1.05>, <0.17, 1.2>, <0.2, 1.3>
        pigment { srgb <0.72, 0.09, 0.10> } finish { Glazed } interior { ior 1.5 }
    }
    translate <0.75, 0, 1.95>
}
sphere_sweep { cubic_spline 5,
    <0.75, 0.2, 1.95>, 0.03, <0.75, 0.9, 1.95>, 0.03, <0.80, 2.2, 1.95>, 0.028, Head, 0.025, Head + y, 0.02
    pigment { srgb <0.45, 0.58, 0.25> } finish { Matte }
}
sphere { Head, 0.09 pigment { srgb <0.45, 0.33, 0.2> } finish { Matte } }
#declare Seeds = 190;
#declare Seed = 0;
#while (Seed < Seeds)
    // Evenly over the sphere, by the golden angle.
    #declare Up = 1 - 2 * (Seed + 0.5) / Seeds;
    #declare Out = sqrt(1 - Up * Up) * vrotate(x, y * Seed * 137.508) + Up * y;
    #declare Tip = Head + Out * 0.62;
    cylinder { Head, Tip, 0.0045 pigment { srgb <0.86, 0.84, 0.78> } finish { Matte } }
    #declare Side = vnormalize(vcross(Out, <0.31, 0.77, -0.55>));
    #declare Hair = 0;
    #while (Hair < 9)
        cylinder { Tip, Tip + Out * 0.07 + vaxis_rotate(Side, Out, Hair * 40) * 0.11, 0.0035 pigment { srgb 0.98 } finish { Matte } }
        #declare Hair = Hair + 1;
    #end
    #declare Seed = Seed + 1;
#end

// ---- fruit

sphere { 0, 1
    scale <0.46, 0.43, 0.46>
    pigment {
        spherical turbulence 0.25
        color_map { [0 srgb <0.80, 0.10, 0.10>] [0.4 srgb <0.86, 0.22, 0.12>] [1 srgb <0.93, 0.72, 0.25>] }
        translate <0.25, 0.45, -0.5> scale 0.9
    }
    finish { Glazed } interior { ior 1.4 }
    translate <-3.05, 0.42, 0.55>
}
sphere { <-2.3, 0.4, 1.05>, 0.4
    pigment { srgb <0.97, 0.55, 0.08> }
    normal { bumps 0.25 scale 0.035 }
    finish { ambient 0 diffuse 0.8 specular 0.25 roughness 0.04 }
}
